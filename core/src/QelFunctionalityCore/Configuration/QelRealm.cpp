#include "QelFunctionalityCore/Configuration/QelRealm.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelRealm> : WireWords<QelRealm> {
    static constexpr int nsId = 292, typeId = 159;
    static constexpr QelWireField fields[] = {
        flag<&QelRealm::readOnly>(2116),
        field<&QelRealm::name>(1026, required, always),
        field<&QelRealm::type>(1007, required, always),
        field<&QelRealm::id>(1010, ignored, always).unchecked(),
    };
    static constexpr int readOrder[] = {1010, 2116, 1026, 1007};
};
template <> const QelWireLayout& qelWireLayout<QelRealm>() {
    return wireLayoutOf<QelRealm>;
}

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
