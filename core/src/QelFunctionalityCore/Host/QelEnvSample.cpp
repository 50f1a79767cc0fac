#include "QelFunctionalityCore/Host/QelEnvSample.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVtVersion> : WireWords<QelVtVersion> {
    static constexpr QelWireField fields[] = {
        field<&R::f1846>(1846, ignored, always),
        field<&R::f1276>(1276, ignored, always),
        field<&R::f2103>(2103, ignored, always),
    };
};
const QelWireLayout& QelVtVersion::wire = wireLayoutOf<QelVtVersion>;

template <> struct Wire<QelFileListType> : WireWords<QelFileListType> {
    static constexpr QelWireField fields[] = {list<&R::f2289>(2289, ignored)};
};
const QelWireLayout& QelFileListType::wire = wireLayoutOf<QelFileListType>;

template <> struct Wire<QelEnvSample> : WireWords<QelEnvSample> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, ignored, always),
        field<&R::config>(1872, ignored, ifSet),
    };
};
const QelWireLayout& QelEnvSample::wire = wireLayoutOf<QelEnvSample>;

template <> struct Wire<QelSampleConf> : WireWords<QelSampleConf> {
    static constexpr QelWireField fields[] = {
        derived<&R::config, true>(1873, required, always),
        field<&R::id>(1010, required, always),
        field<&R::name>(1026, ignored, ifSet),
        field<&R::f1034>(1034, ignored, ifSet, base64),
        field<&R::vtVersion>(2102, required, always),
    };
};
const QelWireLayout& QelSampleConf::wire = wireLayoutOf<QelSampleConf>;

template <> struct Wire<QelHNLookupInfoType> : WireWords<QelHNLookupInfoType> {
    static constexpr QelWireField fields[] = {
        field<&R::hostname>(1261, required, always),
        list<&R::f1072>(1072, optional),
        field<&R::os>(1277, ignored, always),
    };
};
const QelWireLayout& QelHNLookupInfoType::wire = wireLayoutOf<QelHNLookupInfoType>;

int QelHNLookupInfoType::Reader::operator()(const QelMessageIterator& cursor, QelHNLookupInfoType& info) const {
    const int result = readByLayout(QelHNLookupInfoType::wire, &info, cursor);
    if (result != 0)
        Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelEnvSample", __LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::error, "Required configuration parameters are not set");
    return result;
}

} // namespace Qel
