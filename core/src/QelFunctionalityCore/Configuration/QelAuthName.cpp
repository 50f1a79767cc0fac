#include "QelFunctionalityCore/Configuration/QelAuthName.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelAuthName> : WireWords<QelAuthName> {
    static constexpr int nsId = 292, typeId = 148;
    static constexpr QelWireField fields[] = {
        field<&R::domain>(1374, ignored, ifSet, base64),
        field<&R::name>(1026, ignored, ifSet, base64),
        field<&R::realm>(1957, required, always),
    };
};
const QelWireLayout& QelAuthName::wire = wireLayoutOf<QelAuthName>;

namespace {

// The table of one PropertyForm.
template <int propertyItem> struct PrincipalWire : WireWords<QelSecurityPrincipal> {
    using Words = WireWords<QelSecurityPrincipal>;
    static constexpr QelWireField fields[] = {
        Words::list<&QelSecurityPrincipal::namesFirst>(1029, Words::optional),
        Words::list<&QelSecurityPrincipal::namesSecond>(1737, Words::optional),
        Words::list<&QelSecurityPrincipal::namesThird>(2121, Words::optional),
        Words::wrapped<&QelSecurityPrincipal::properties>(1307, propertyItem, Words::optional, Words::ifSet),
        Words::base<QelAuthName>(),
    };
};

struct WithProperties;

} // namespace

template <> struct Wire<QelSecurityPrincipal> : PrincipalWire<1918> {};
template <> struct Wire<WithProperties> : PrincipalWire<1930> {};
const QelWireLayout& QelSecurityPrincipal::wire = wireLayoutOf<QelSecurityPrincipal>;

namespace {

const QelWireLayout& layoutFor(QelSecurityPrincipal::PropertyForm form) {
    return form == QelSecurityPrincipal::PropertyForm::properties ? wireLayoutOf<WithProperties>
                                                                  : wireLayoutOf<QelSecurityPrincipal>;
}

} // namespace

int QelSecurityPrincipal::Reader::operator()(const QelMessageIterator& cursor, QelSecurityPrincipal& principal) const {
    return readByLayout(layoutFor(form), &principal, cursor);
}

int QelSecurityPrincipal::Writer::operator()(QelMessageIterator& cursor, const QelSecurityPrincipal& principal) const {
    return writeByLayout(layoutFor(form), &principal, cursor);
}

} // namespace Qel
