#include "qel/env/EnvSummary.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "QelCommon/Utf8.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"

namespace Qel::Tool {

namespace {

const char* nameOfAlert(int level) {
    switch (static_cast<QelAlertType>(level)) {
    case QelAlertType::green:
        return "green";
    case QelAlertType::yellow:
        return "yellow";
    case QelAlertType::red:
        return "red";
    case QelAlertType::black:
        return "black";
    }
    return "?";
}

std::string highestAlert(const EnvSummary& env) {
    const int level = *std::max_element(env.alerts.begin(), env.alerts.end());
    return std::to_string(level) + ' ' + nameOfAlert(level);
}

Json summaryAsJson(const EnvSummary& env) {
    return {{"eid", env.eid.toString()},
            {"parent", env.parent.toString()},
            {"type", env.type ? Json(*env.type) : Json()},
            {"state", env.status.state},
            {"transition", env.status.transition},
            {"title", env.title},
            {"alerts", env.alerts},
            {"configSize", env.configSize},
            {"vconfigSize", env.vconfigSize}};
}

/// Arranges the environments in a tree.  Places are indexes into `all`.
class Tree {
public:
    explicit Tree(const std::vector<EnvSummary>& all) : m_all(all) {
        for (std::size_t i = 0; i < all.size(); ++i)
            m_placeOf[all[i].eid] = i;
        m_children.resize(all.size());
        for (std::size_t i = 0; i < all.size(); ++i) {
            const auto parent = m_placeOf.find(all[i].parent);
            if (parent == m_placeOf.end())
                m_roots.push_back(i);
            else
                m_children[parent->second].push_back(i);
        }
    }

    struct Line {
        std::string branches; ///< prefix of the environment's line
        const EnvSummary* env;
    };

    /// Returns one line for each environment.
    [[nodiscard]] std::vector<Line> lines() {
        m_drawn.assign(m_all.size(), false);
        for (const std::size_t root : m_roots)
            drawBelow(root);
        // The remaining environments are in a cycle of parents or below one.
        for (std::size_t i = 0; i < m_all.size(); ++i)
            drawBelow(startOfCycle(i));
        return std::move(m_lines);
    }

private:
    struct Pending {
        std::size_t place;
        std::string branch; ///< prefix of the environment itself
        std::string below;  ///< prefix of its children
    };

    /// Draws an environment and its descendants, except those already drawn.  Iterative, because the depth of the tree
    /// is not limited.
    void drawBelow(std::size_t root) {
        std::vector<Pending> pending{{root, "", ""}};
        while (!pending.empty()) {
            const Pending next = std::move(pending.back());
            pending.pop_back();
            if (m_drawn[next.place])
                continue;
            m_drawn[next.place] = true;
            m_lines.push_back({next.branch, &m_all[next.place]});
            const auto& children = m_children[next.place];
            for (std::size_t i = children.size(); i-- > 0;) {
                const bool isLast = i + 1 == children.size();
                pending.push_back(
                    {children[i], next.below + (isLast ? "└─ " : "├─ "), next.below + (isLast ? "   " : "│  ")});
            }
        }
    }

    /// Follows the parents of an undrawn environment and returns the first member of their cycle.
    [[nodiscard]] std::size_t startOfCycle(std::size_t place) const {
        if (m_drawn[place])
            return place;
        std::vector<bool> passed(m_all.size());
        while (!passed[place]) {
            passed[place] = true;
            place = m_placeOf.at(m_all[place].parent);
        }
        return place;
    }

    const std::vector<EnvSummary>& m_all;
    std::map<QelEID, std::size_t> m_placeOf;
    std::vector<std::size_t> m_roots;
    std::vector<std::vector<std::size_t>> m_children;
    std::vector<bool> m_drawn;
    std::vector<Line> m_lines;
};

/// An environment stores the first 15 bytes of its type.  Removes a UTF-8 character truncated at the end.
std::string wholeCharacters(const QelEnvType& type) {
    std::string text = type.c_str();
    if (text.size() + 1 < sizeof(QelEnvType))
        return text;
    std::size_t last = text.size() - 1;
    while (last > 0 && isUtf8Continuation(text[last]))
        --last;
    if (firstUtf8Character(std::string_view(text).substr(last)).length == 0)
        text.resize(last);
    return text;
}

} // namespace

EnvSummary summarise(const QelEnv& env) {
    const auto core = env.getCoreBasic();
    EnvSummary summary;
    summary.eid = env.getEID();
    summary.parent = env.getParentEID();
    if (env.getType().isSpecified())
        summary.type = wholeCharacters(env.getType());
    summary.status = env.getStatus();
    summary.title = env.getTitle();
    std::transform(std::begin(core->alertType), std::end(core->alertType), summary.alerts.begin(),
                   [](QelAlertType level) { return static_cast<int>(level); });
    summary.configSize = core->configSize;
    summary.vconfigSize = core->vconfigSize;
    return summary;
}

void printAsTable(std::ostream& out, const std::vector<EnvSummary>& all) {
    using Align = Table::Align;
    Table table({Align::left, Align::left, Align::left, Align::right, Align::right});
    table.addRow({"EID", "parent", "type", "state", "transition", "alert", "title"});
    for (const EnvSummary& env : all)
        table.addRow({env.eid.toString(), env.parent.isValid() ? env.parent.toString() : "-", env.type.value_or("-"),
                      std::to_string(env.status.state), std::to_string(env.status.transition), highestAlert(env),
                      env.title});
    table.print(out);
}

void printAsTree(std::ostream& out, const std::vector<EnvSummary>& all) {
    using Align = Table::Align;
    Table table({Align::left, Align::left, Align::left, Align::right, Align::right});
    table.addRow({"title", "EID", "type", "state", "transition", "alert"});
    for (const Tree::Line& line : Tree(all).lines()) {
        const EnvSummary& env = *line.env;
        table.addRow({line.branches + env.title, env.eid.toString(), env.type.value_or("-"),
                      std::to_string(env.status.state), std::to_string(env.status.transition), highestAlert(env)});
    }
    table.print(out);
}

Json toJson(const std::vector<EnvSummary>& all) {
    Json array = Json::array();
    for (const EnvSummary& env : all)
        array.push_back(summaryAsJson(env));
    return array;
}

} // namespace Qel::Tool
