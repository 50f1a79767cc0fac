#include "QelFunctionalityCore/Configuration/QelRealm.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelRealm> : WireWords<QelRealm> {
    static constexpr int nsId = 292, typeId = 159;
    static constexpr QelWireField fields[] = {
        flag<&R::readOnly>(2116),
        field<&R::name>(1026, required, always),
        field<&R::type>(1007, required, always),
        field<&R::id>(1010, ignored, always).bestEffort(),
    };
    static constexpr int readOrder[] = {1010, 2116, 1026, 1007};
};
const QelWireLayout& QelRealm::wire = wireLayoutOf<QelRealm>;

int QelRealm::set(const QelRealm& other) {
    if (type != other.type || id != other.id || readOnly || other.readOnly) {
        setErrorMessage("Couldn't change read-only parameters");
        return -1;
    }
    name = other.name;
    return 0;
}

template class QelDerivedParserFactory<QelRealm>;

QelDerivedParserFactoryT<QelRealm, QelRealm> factoryQelRealm(true);

} // namespace Qel
