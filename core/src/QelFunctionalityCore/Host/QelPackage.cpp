#include "QelFunctionalityCore/Host/QelPackage.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelPackage>;

QelDerivedParserFactoryT<QelPackage, QelPackage> factoryQelPackage(true);
QelDerivedParserFactoryT<QelPackageRpm, QelPackage> factoryQelPackageRpm(false);
QelDerivedParserFactoryT<QelPackageDeb, QelPackage> factoryQelPackageDeb(false);

namespace {

bool hasDetailOrName(const QelOS& os) {
    return os.osDetail.isSpecified() || os.osName.isSpecified();
}

} // namespace

template <> struct Wire<QelPackage> : WireWords<QelPackage> {
    static constexpr int nsId = 292, typeId = 155;
    static constexpr QelWireField fields[] = {
        field<&QelPackage::name>(1026, required, always),
        field<&QelPackage::version>(1223, optional, ifSet),
        field<&QelPackage::release>(1853, optional, ifSet),
        field<&QelPackage::description>(1496, optional, ifSet),
        fieldIf<&QelPackage::os, hasDetailOrName>(1277, optional),
        field<&QelPackage::arch>(2005, optional, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelPackage>() {
    return wireLayoutOf<QelPackage>;
}

template <> struct Wire<QelPackageLinux> : WireWords<QelPackageLinux> {
    static constexpr int nsId = 302, typeId = 272;
    static constexpr QelWireField fields[] = {
        base<QelPackage>(),
        field<&QelPackageLinux::filePath>(1156, optional, ifSet, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<QelPackageLinux>() {
    return wireLayoutOf<QelPackageLinux>;
}

template <> struct Wire<QelInstallationPackage> : WireWords<QelInstallationPackage> {
    static constexpr int packageElement = 1295, pathElement = 1156;
    static constexpr QelWireField fields[] = {
        derived<&QelInstallationPackage::package, true>(packageElement, ignored, ifSet),
        field<&QelInstallationPackage::path>(pathElement, required, ifSet, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<QelInstallationPackage>() {
    return wireLayoutOf<QelInstallationPackage>;
}

int QelInstallationPackage::Reader::operator()(const QelMessageIterator& cursor, QelInstallationPackage& record) const {
    using Elements = Wire<QelInstallationPackage>;
    if (cursor.getObject(record.package, QelReaderDerived<QelPackage>(true), Elements::packageElement) == 0)
        return 0;
    return cursor.getValueBase64(record.path, Elements::pathElement);
}

} // namespace Qel
