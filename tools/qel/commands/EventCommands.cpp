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

/// What the info tells; ExitCode::failed, and an error, if that is more than a text may be.
ExitCode render(const QelInfo& info, const std::string& path, const std::string& file, const Console& console,
                std::string& text) {
    clearErrorMessage();
    text = info.getParameterByPath(path);
    return getErrorMessage().empty() ? ExitCode::success
                                     : console.fail(ExitCode::failed, shownName(file) + ": " + getErrorMessage());
}

// --- qel event show

void addShowOptions(Options& options) {
    options.add(
        {.name = "cache", .value = "CACHE", .help = "call environments by the titles that they have in a cache file"});
    addVocOption(options, "vocabularies, which tell the alerts whose values are doubles");
    addJsonOption(options);
}

/// The process's cache for as long as this lives.
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

/// Silences the log for as long as this lives.  A text that names an environment asks the process's cache for a title,
/// and without one each attempt is logged as a failure.
class QuietLog {
public:
    QuietLog() : m_level(std::exchange(debug_level, 0)) {}
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog() { debug_level = m_level; }

private:
    int m_level;
};

/// What a payload is, and what it tells.
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

/// What an alert tells, with doubles as such: by itself it tells their bits as an integer.
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

/// What the payload under the cursor tells; nothing if it can't be read.  The values of a resource alert are read in
/// the form that the vocabularies tell, if there are any; any other payload is the event's.
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

/// The payload of the event under the cursor; nothing if it has none.
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

std::string timeText(long time) {
    return std::string(QelValueText::ofTime(time).view());
}

void printEventAsJson(std::ostream& out, const QelEvent& event, const std::string& text,
                      const std::optional<Payload>& payload, const std::vector<std::string>& subscriptions) {
    Json json{{"id", event.id.toString()},   {"time", timeText(event.time)},   {"environment", event.eid.toString()},
              {"source", event.source},      {"category", event.category},     {"severity", event.severity},
              {"sid", event.sid.toString()}, {"subscriptions", subscriptions}, {"text", text},
              {"payload", nullptr}};
    if (payload)
        json["payload"] = {{"type", payload->type}, {"known", payload->isKnown}, {"text", payload->text}};
    printJson(out, json);
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

void printEvent(std::ostream& out, const QelEvent& event, const std::string& text,
                const std::optional<Payload>& payload, const std::vector<std::string>& subscriptions) {
    Table table;
    table.addRow({"event", event.id.toString()});
    table.addRow({"time", timeText(event.time)});
    table.addRow({"environment", event.eid.toString()});
    table.addRow({"source", event.source});
    table.addRow({"category", event.category});
    table.addRow({"severity", std::to_string(event.severity)});
    table.addRow({"SID", event.sid.toString()});
    table.addRow({"subscriptions", joined(subscriptions)});
    table.addRow({"text", text});
    if (payload) {
        table.addRow({"payload", payload->type + (payload->isKnown ? "" : ", which can't be read")});
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
        const std::string& path = invocation.text("cache");
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
    (invocation.has("json") ? printEventAsJson : printEvent)(console.out, event, text, payload,
                                                             from.message().getSubscriptions());
    return ExitCode::success;
}

// --- qel info render

void addRenderOptions(Options& options) {
    options.add({.name = "path",
                 .value = "PATH",
                 .byDefault = "/",
                 .help = "the parameter to render, by the names that lead to it: env/title"});
}

/// Whether a path, as QelInfo::getParameterByPath() takes it, leads to a parameter or to the info itself.
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
    const std::string& path = invocation.text("path");
    if (!hasParameter(info, path))
        return console.fail(ExitCode::notSo, shownName(file) + ": no parameter at '" + path + "'");
    std::string text;
    if (const ExitCode code = render(info, path, file, console, text); code != ExitCode::success)
        return code;
    console.out << showControls(text, "\n\t") << '\n';
    return ExitCode::success;
}

} // namespace

CommandGroup eventCommands() {
    static constexpr std::array commands{
        Command{"show", "FILE", "Shows the event in a message: who, when, where and why, and what its payload tells.",
                addShowOptions, runShow},
    };
    return {"event", "Events and alerts.", commands};
}

CommandGroup infoCommands() {
    static constexpr std::array commands{
        Command{"render", "FILE", "Prints the text of the info in a message, with its values in their places.",
                addRenderOptions, runRender},
    };
    return {"info", "Message texts that are kept apart from their values.", commands};
}

} // namespace Qel::Tool
