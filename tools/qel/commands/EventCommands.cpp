#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>

#include "QelCommon/Log.h"
#include "QelFunctionalityCore/Events/QelEvent.h"
#include "QelFunctionalityCore/Events/QelResourceAlertData.h"
#include "QelMessage/QelValueText.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/env/CacheAccess.h"
#include "qel/records/RecordInMessage.h"
#include "qel/vocabulary/VocFiles.h"

namespace Qel::Tool {

namespace {

/// Renders a parameter of an info.  Reports an error and returns ExitCode::failed if the result exceeds the size limit.
ExitCode render(const QelInfo& info, const std::string& path, const std::string& file, const Console& console,
                std::string& text) {
    clearErrorMessage();
    text = info.getParameterByPath(path);
    return getErrorMessage().empty() ? ExitCode::success
                                     : console.fail(ExitCode::failed, shownName(file) + ": " + getErrorMessage());
}

// --- qel event show

void addShowOptions(Options& options) {
    options.add({.name = "cache", .value = "CACHE", .help = "look up the titles of environments in this cache file"});
    addVocOption(options, "vocabularies that define which alerts have floating-point values");
    addJsonOption(options);
}

/// Sets the process-wide cache during its lifetime.
class NamedCache {
public:
    explicit NamedCache(const std::string& path) { initEnvCache(path, false); }
    NamedCache(const NamedCache&) = delete;
    NamedCache& operator=(const NamedCache&) = delete;
    ~NamedCache() {
        finiEnvCache();
        initEnvCache({}, false);
    }
};

/// Silences the log during its lifetime.  Rendering a reference to an environment looks up its title in the
/// process-wide cache; without a cache, every lookup logs an error.
class QuietLog {
public:
    QuietLog() : m_level(std::exchange(debug_level, 0)) {}
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog() { debug_level = m_level; }

private:
    int m_level;
};

/// The payload of an event: its type and rendered text, which is empty unless `isKnown`.
struct Payload {
    std::string type;
    bool isKnown;
    std::string text;
};

bool isResourceAlert(const QelMessageIterator& payload) {
    const auto& factories = QelDerivedParserFactory<QelEventData>::factories();
    const auto found = factories.find(payload.curType());
    return found != factories.end() && found->second == &factoryQelResourceAlertData;
}

/// The info of an alert, with floating-point values rendered as numbers; QelResourceAlertData::toInfo() renders their
/// bits as integers.
QelInfo infoOf(const QelResourceAlertData& alert) {
    QelInfo info;
    alert.toInfo(info);
    if (alert.isInteger)
        return info;
    const auto set = [&](const char* name, const QelPerfValue& value) {
        info.setParameter(QelInfo(std::string(QelValueText::ofDouble(value.real).view()), name, false));
    };
    set("cur", alert.current);
    set("hard", alert.hard);
    if (alert.soft.isSpecified())
        set("soft", alert.soft.get());
    return info;
}

/// The info of the payload at the cursor, or std::nullopt if it is unreadable.  With vocabularies, a resource alert is
/// read again to interpret its values; any other payload is that of `event`.
std::optional<QelInfo> infoOfPayload(const QelEvent& event, const QelMessageIterator& payload,
                                     const QelVocMapSP& vocabularies) {
    if (vocabularies && isResourceAlert(payload)) {
        QelResourceAlertData alert;
        if (payload.getObject(alert, QelResourceAlertData::Reader(vocabularies), getEmptyID()) != 0)
            return {};
        return infoOf(alert);
    }
    if (!event.data)
        return {};
    QelInfo info;
    event.data->toInfo(info);
    return info;
}

/// Describes the payload of the event at the cursor.  Leaves `payload` empty if there is none.
ExitCode describePayload(const QelEvent& event, const QelMessageIterator& cursor, const QelVocMapSP& vocabularies,
                         const std::string& file, const Console& console, std::optional<Payload>& payload) {
    if (cursor.seek(1307) != 0)
        return ExitCode::success;
    std::optional<QelInfo> info;
    if (cursor.seek(1913) == 0) {
        info = infoOfPayload(event, cursor, vocabularies);
        payload = Payload{cursor.curType(), info.has_value(), {}};
        cursor.seekUp();
    }
    cursor.seekUp();
    return info ? render(*info, "/", file, console, payload->text) : ExitCode::success;
}

std::string timeString(long time) {
    return std::string(QelValueText::ofTime(time).view());
}

Json eventAsJson(const QelEvent& event, const std::string& text, const std::optional<Payload>& payload,
                 const std::vector<std::string>& subscriptions) {
    Json json{{"id", event.id.toString()},   {"time", timeString(event.time)}, {"environment", event.eid.toString()},
              {"source", event.source},      {"category", event.category},     {"severity", event.severity},
              {"sid", event.sid.toString()}, {"subscriptions", subscriptions}, {"text", text},
              {"payload", nullptr}};
    if (payload)
        json["payload"] = {{"type", payload->type}, {"known", payload->isKnown}, {"text", payload->text}};
    return json;
}

std::string joined(const std::vector<std::string>& words) {
    std::string string;
    for (const std::string& word : words)
        string += (string.empty() ? "" : " ") + word;
    return string;
}

void printEvent(std::ostream& out, const QelEvent& event, const std::string& text,
                const std::optional<Payload>& payload, const std::vector<std::string>& subscriptions) {
    Table table;
    table.addRow({"event", event.id.toString()});
    table.addRow({"time", timeString(event.time)});
    table.addRow({"environment", event.eid.toString()});
    table.addRow({"source", event.source});
    table.addRow({"category", event.category});
    table.addRow({"severity", std::to_string(event.severity)});
    table.addRow({"SID", event.sid.toString()});
    table.addRow({"subscriptions", joined(subscriptions)});
    table.addRow({"text", text});
    if (payload) {
        table.addRow({"payload", payload->type + (payload->isKnown ? "" : " (unreadable)")});
        table.addRow({"payload text", payload->text});
    }
    table.print(out);
}

ExitCode runShow(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    QelVocMapSP vocabularies;
    if (const ExitCode code = readVocOption(invocation, console, vocabularies); code != ExitCode::success)
        return code;
    RecordInMessage from;
    QelEvent event;
    if (const ExitCode code = from.read(file, event, console); code != ExitCode::success)
        return code;
    std::optional<NamedCache> named;
    std::optional<QuietLog> quiet;
    if (!invocation.has("cache")) {
        quiet.emplace();
    } else {
        const std::string& path = invocation.string("cache");
        QelEnvCacheSP checked;
        if (const ExitCode code = openCache(path, CacheUse::existing, console, checked); code != ExitCode::success)
            return code;
        named.emplace(path);
    }
    std::string text;
    if (const ExitCode code = render(event.info, "/", file, console, text); code != ExitCode::success)
        return code;
    std::optional<Payload> payload;
    if (const ExitCode code = describePayload(event, from.cursor(), vocabularies, file, console, payload);
        code != ExitCode::success)
        return code;
    const std::vector<std::string> subscriptions = from.message().getSubscriptions();
    Output(invocation, console)
        .print([&] { return eventAsJson(event, text, payload, subscriptions); },
               [&](std::ostream& out) { printEvent(out, event, text, payload, subscriptions); });
    return ExitCode::success;
}

// --- qel info render

void addRenderOptions(Options& options) {
    options.add({.name = "path",
                 .value = "PATH",
                 .byDefault = "/",
                 .help = "path of the parameter to render, such as env/title"});
}

/// Whether a path in the syntax of QelInfo::getParameterByPath() names a parameter or the info itself.
bool hasParameter(const QelInfo& info, std::string_view path) {
    const QelInfo* at = &info;
    while (at) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        if (path.empty())
            return true;
        const std::string_view name = path.substr(0, path.find('/'));
        at = at->getParameter(name);
        path.remove_prefix(name.size());
    }
    return false;
}

ExitCode runRender(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    RecordInMessage from;
    QelInfo info;
    if (const ExitCode code = from.read(file, info, console); code != ExitCode::success)
        return code;
    const std::string& path = invocation.string("path");
    if (!hasParameter(info, path))
        return console.fail(ExitCode::negative, shownName(file) + ": no parameter at '" + path + "'");
    std::string text;
    if (const ExitCode code = render(info, path, file, console, text); code != ExitCode::success)
        return code;
    console.out << showControls(text, "\n\t") << '\n';
    return ExitCode::success;
}

} // namespace

CommandGroup eventCommands() {
    static constexpr std::array commands{
        Command{"show", "FILE", "Show the event in a message, with its payload", addShowOptions, runShow},
    };
    return {"event", "Events and alerts", commands};
}

CommandGroup infoCommands() {
    static constexpr std::array commands{
        Command{"render", "FILE", "Print the text of the info in a message, with its parameters inserted",
                addRenderOptions, runRender},
    };
    return {"info", "Format strings with parameters", commands};
}

} // namespace Qel::Tool
