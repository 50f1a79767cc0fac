#include "QelFunctionalityCore/Host/QelEnvSample.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVtVersion> : WireWords<QelVtVersion> {
    static constexpr QelWireField fields[] = {
        field<&QelVtVersion::f1846>(1846, ignored, always),
        field<&QelVtVersion::f1276>(1276, ignored, always),
        field<&QelVtVersion::f2103>(2103, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelVtVersion>() {
    return wireLayoutOf<QelVtVersion>;
}

template <> struct Wire<QelFileListType> : WireWords<QelFileListType> {
    static constexpr QelWireField fields[] = {list<&QelFileListType::f2289>(2289, ignored)};
};
template <> const QelWireLayout& qelWireLayout<QelFileListType>() {
    return wireLayoutOf<QelFileListType>;
}

template <> struct Wire<QelEnvSample> : WireWords<QelEnvSample> {
    static constexpr QelWireField fields[] = {
        field<&QelEnvSample::id>(1010, ignored, always),
        field<&QelEnvSample::config>(1872, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelEnvSample>() {
    return wireLayoutOf<QelEnvSample>;
}

template <> struct Wire<QelSampleConf> : WireWords<QelSampleConf> {
    static constexpr QelWireField fields[] = {
        derived<&QelSampleConf::config, true>(1873, required, always),
        field<&QelSampleConf::id>(1010, required, always),
        field<&QelSampleConf::name>(1026, ignored, ifSet),
        field<&QelSampleConf::f1034>(1034, ignored, ifSet, base64),
        field<&QelSampleConf::vtVersion>(2102, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSampleConf>() {
    return wireLayoutOf<QelSampleConf>;
}

template <> struct Wire<QelHNLookupInfoType> : WireWords<QelHNLookupInfoType> {
    static constexpr QelWireField fields[] = {
        field<&QelHNLookupInfoType::hostname>(1261, required, always),
        list<&QelHNLookupInfoType::f1072>(1072, optional),
        field<&QelHNLookupInfoType::os>(1277, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelHNLookupInfoType>() {
    return wireLayoutOf<QelHNLookupInfoType>;
}

int QelHNLookupInfoType::Reader::operator()(const QelMessageIterator& cursor, QelHNLookupInfoType& info) const {
    const int result = readByLayout(qelWireLayout<QelHNLookupInfoType>(), &info, cursor);
    if (result != 0)
        Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelEnvSample", __LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::error, "Required configuration parameters are not set");
    return result;
}

} // namespace Qel
