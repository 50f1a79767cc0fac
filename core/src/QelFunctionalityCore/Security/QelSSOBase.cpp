#include "QelFunctionalityCore/Security/QelSSOBase.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSSOServerConfig> : WireWords<QelSSOServerConfig> {
    static constexpr QelWireField fields[] = {
        field<&QelSSOServerConfig::server>(1012, required, always).unchecked(),
        field<&QelSSOServerConfig::serverVersion>(1223, required, always).unchecked(),
        flag<&QelSSOServerConfig::enabled>(1856).unchecked(),
    };
    static constexpr int readOrder[] = {1856, 1012, 1223};
};
template <> const QelWireLayout& qelWireLayout<QelSSOServerConfig>() {
    return wireLayoutOf<QelSSOServerConfig>;
}

template <> struct Wire<QelSSOServiceProviderConfig> : WireWords<QelSSOServiceProviderConfig> {
    using Config = QelSSOServiceProviderConfig;
    static constexpr QelWireField fields[] = {
        field<&Config::name>(1026, required, always).unchecked(),
        flag<&Config::enabled>(1856).unchecked(),
        field<&Config::field2137>(2137, required, always).unchecked(),
        field<&Config::field2138>(2138, required, always).unchecked(),
        field<&Config::field2139>(2139, required, always).unchecked(),
        field<&Config::field2140>(2140, ignored, ifSet, base64).unchecked(),
        field<&Config::field2141>(2141, ignored, ifSet).unchecked(),
        field<&Config::field2142>(2142, required, always).unchecked(),
        field<&Config::field2143>(2143, required, always).unchecked(),
        field<&Config::field2144>(2144, required, always, base64).unchecked(),
        field<&Config::providerVersion>(1223, ignored, ifSet).unchecked(),
    };
    static constexpr int readOrder[] = {1856, 2140, 2141, 1223, 1026, 2137, 2138, 2139, 2142, 2143, 2144};
};
template <> const QelWireLayout& qelWireLayout<QelSSOServiceProviderConfig>() {
    return wireLayoutOf<QelSSOServiceProviderConfig>;
}

namespace {

template <class Config> int readParameters(const QelMessageIterator& cursor, Config& config) {
    const int result = readByLayout(qelWireLayout<Config>(), &config, cursor);
    if (result != 0)
        Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelSSOBase", __LINE__, "operator()", __PRETTY_FUNCTION__)
            .put("Required configuration parameters are not set");
    return result;
}

} // namespace

int QelSSOServerConfig::Reader::operator()(const QelMessageIterator& cursor, QelSSOServerConfig& config) const {
    return readParameters(cursor, config);
}

int QelSSOServiceProviderConfig::Reader::operator()(const QelMessageIterator& cursor,
                                                    QelSSOServiceProviderConfig& config) const {
    return readParameters(cursor, config);
}

} // namespace Qel
