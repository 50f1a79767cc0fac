#include "QelFunctionalityCore/Host/QelPackage.h"

#include "QelFunctionalityCore/Files/QelFilePathReader.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelPackage>;

QelDerivedParserFactoryT<QelPackage, QelPackage> factoryQelPackage(true);
QelDerivedParserFactoryT<QelPackageRpm, QelPackage> factoryQelPackageRpm(false);
QelDerivedParserFactoryT<QelPackageDeb, QelPackage> factoryQelPackageDeb(false);

namespace {

int readFilePath(const QelMessageIterator& cursor, QelPackageLinux& package) {
    return cursor.getObject(package.filePath, QelFilePathReader(), "path"_element);
}

int writeFilePath(QelMessageIterator& cursor, const QelPackageLinux& package) {
    return package.filePath.empty() ? 0 : cursor.putValueBase64(package.filePath, "path"_element);
}

bool hasDetailOrName(const QelOS& os) {
    return os.osDetail.isSpecified() || os.osName.isSpecified();
}

} // namespace

template <> struct Wire<QelPackage> : WireWords<QelPackage> {
    static constexpr int nsId = 292, typeId = 155;
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),          field<&R::version>(1223, ignored, ifSet),
        field<&R::release>(1853, ignored, ifSet),         field<&R::description>(1496, ignored, ifSet),
        fieldIf<&R::os, hasDetailOrName>(1277, optional), field<&R::arch>(2005, ignored, ifSet),
    };
};
const QelWireLayout& QelPackage::wire = wireLayoutOf<QelPackage>;

template <> struct Wire<QelPackageLinux> : WireWords<QelPackageLinux> {
    static constexpr int nsId = 302, typeId = 272;
    static constexpr QelWireField fields[] = {
        base<QelPackage>(),
        step<&readFilePath, &writeFilePath, std::string>("filePath", "path"_element, ignored, ifSet).withForm(base64),
    };
};
const QelWireLayout& QelPackageLinux::wire = wireLayoutOf<QelPackageLinux>;

template <> struct Wire<QelInstallationPackage> : WireWords<QelInstallationPackage> {
    static constexpr QelWireField fields[] = {
        derived<&R::package, true>("package"_element, ignored, ifSet),
        field<&R::path>("path"_element, required, ifSet, base64),
    };
};
const QelWireLayout& QelInstallationPackage::wire = wireLayoutOf<QelInstallationPackage>;

int QelInstallationPackage::Reader::operator()(const QelMessageIterator& cursor, QelInstallationPackage& record) const {
    if (cursor.getObject(record.package, QelReaderDerived<QelPackage>(true), "package"_element) == 0)
        return 0;
    return cursor.getObject(record.path, QelFilePathReader(), "path"_element);
}

} // namespace Qel
