#include "QelFunctionalityCore/Security/QelSSOBase.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSSOServerConfig> : WireWords<QelSSOServerConfig> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::server>(1012, required, always),
        field<&R::serverVersion>(1223, required, always),
        flag<&R::enabled>(1856),
    };
    static constexpr int readOrder[] = {1856, 1012, 1223};
};
const QelWireLayout& QelSSOServerConfig::wire = wireLayoutOf<QelSSOServerConfig>;

template <> struct Wire<QelSSOServiceProviderConfig> : WireWords<QelSSOServiceProviderConfig> {
    using Config = QelSSOServiceProviderConfig;
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&Config::name>(1026, required, always),
        flag<&Config::enabled>(1856),
        field<&Config::field2137>(2137, required, always),
        field<&Config::field2138>(2138, required, always),
        field<&Config::field2139>(2139, required, always),
        field<&Config::field2140>(2140, ignored, ifSet, base64),
        field<&Config::field2141>(2141, ignored, ifSet),
        field<&Config::field2142>(2142, required, always),
        field<&Config::field2143>(2143, required, always),
        field<&Config::field2144>(2144, required, always, base64),
        field<&Config::providerVersion>(1223, ignored, ifSet),
    };
    static constexpr int readOrder[] = {1856, 2140, 2141, 1223, 1026, 2137, 2138, 2139, 2142, 2143, 2144};
};
const QelWireLayout& QelSSOServiceProviderConfig::wire = wireLayoutOf<QelSSOServiceProviderConfig>;

namespace {

template <class Config> int readParameters(const QelMessageIterator& cursor, Config& config) {
    const int result = readByLayout(Config::wire, &config, cursor);
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
