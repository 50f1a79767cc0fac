#include "QelFunctionalityCore/Events/QelInfo.h"

#include <random>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"
#include "QelMessage/QelLimits.h"
#include "support/AllocationCounter.h"
#include "support/RequiredChildren.h"

namespace Qel {

namespace {

using testing::HasSubstr;
using testing::IsNull;

QelInfo parameter(const std::string& name, const std::string& text) {
    return {text, name, true};
}

QelInfo formatted(const std::string& format, std::initializer_list<QelInfo> parameters = {}) {
    QelInfo info(format, "", true);
    for (const QelInfo& each : parameters)
        info.addParameter(each);
    return info;
}

/// An info with nested parameters, `levels` deep; each format refers to the next level.
QelInfo nested(int levels, const std::string& format = "<%p%>") {
    QelInfo info(levels == 0 ? "end" : format, "p", true);
    if (levels > 0)
        info.addParameter(nested(levels - 1, format));
    return info;
}

TEST(QelInfoTest, DefaultIsEmptyAndTranslatable) {
    const QelInfo info;
    EXPECT_TRUE(info.empty());
    EXPECT_EQ(info.name, "");
    EXPECT_TRUE(info.translatable);
    EXPECT_TRUE(info.parameters.empty());
    EXPECT_EQ(info.toString(), "");
}

TEST(QelInfoTest, ConstructorTakesTextFirst) {
    const QelInfo info("text", "name", false);
    EXPECT_EQ(info.text, "text");
    EXPECT_EQ(info.name, "name");
    EXPECT_FALSE(info.translatable);
    EXPECT_FALSE(info.empty());
}

TEST(QelInfoTest, SwapExchangesEveryField) {
    QelInfo a("a", "A", false);
    a.addParameter(parameter("x", "1"));
    QelInfo b("b", "B", true);
    const QelInfo oldA = a;
    const QelInfo oldB = b;
    a.swap(b);
    EXPECT_EQ(a, oldB);
    EXPECT_EQ(b, oldA);
}

// --- Placeholders

TEST(QelInfoTest, ReplacesPlaceholderByTextOfParameter) {
    EXPECT_EQ(formatted("%a% and %b%", {parameter("a", "one"), parameter("b", "two")}).toString(), "one and two");
    EXPECT_EQ(formatted("%a%%a%", {parameter("a", "one")}).toString(), "oneone");
}

TEST(QelInfoTest, RemovesPlaceholderWithoutParameter) {
    EXPECT_EQ(formatted("a %x% b").toString(), "a  b");
}

TEST(QelInfoTest, KeepsUnmatchedPercentSign) {
    EXPECT_EQ(formatted("100%").toString(), "100%");
    EXPECT_EQ(formatted("100% done").toString(), "100% done");
    EXPECT_EQ(formatted("%").toString(), "%");
    EXPECT_EQ(formatted("%x% of 100%", {parameter("x", "50%")}).toString(), "50% of 100%");
}

TEST(QelInfoTest, AdjacentPercentSignsAreEmptyKey) {
    EXPECT_EQ(formatted("100%% sure").toString(), "100 sure");
    EXPECT_EQ(formatted("100%% sure", {parameter("", "!")}).toString(), "100! sure");
    EXPECT_EQ(formatted("%%%").toString(), "%");
}

TEST(QelInfoTest, JoinsParametersWithSameNameInOrder) {
    QelInfo info = formatted("[%x%]", {parameter("x", "2"), parameter("x", "1"), parameter("w", "no")});
    EXPECT_EQ(info.toString(), "[2,1]");
    EXPECT_EQ(&info.setParameter(parameter("x", "3")), &info);
    EXPECT_EQ(info.toString(), "[3]");
    EXPECT_EQ(&info.addParameter(parameter("x", "")), &info);
    EXPECT_EQ(info.toString(), "[3,]");
}

TEST(QelInfoTest, ExpandsParameterWithItsOwnParameters) {
    QelInfo env = formatted("%title% (%type%)", {parameter("title", "web"), parameter("type", "container")});
    env.name = "env";
    EXPECT_EQ(formatted("%env%: %title%", {env}).toString(), "web (container): ");
}

TEST(QelInfoTest, DoesNotExpandResultAgain) {
    EXPECT_EQ(formatted("%a%b%", {parameter("a", "%"), parameter("b", "no")}).toString(), "%b%");
}

TEST(QelInfoTest, AcceptsOwnParameterAsArgument) {
    QelInfo info = formatted("%x%", {parameter("x", "first"), parameter("x", "second")});
    info.setParameter(*info.getParameter("x"));
    EXPECT_EQ(info.toString(), "first");
    info.addParameter(info);
    EXPECT_EQ(info.getParameterByPath("/x"), "first");
    EXPECT_EQ(info.parameters.size(), 2U);
}

TEST(QelInfoTest, GetParameterReturnsFirstWithName) {
    const QelInfo info = formatted("", {parameter("x", "1"), parameter("x", "2")});
    ASSERT_NE(info.getParameter("x"), nullptr);
    EXPECT_EQ(info.getParameter("x")->text, "1");
    EXPECT_THAT(info.getParameter("y"), IsNull());
    EXPECT_THAT(info.getParameter(""), IsNull());
}

// --- Translation

struct German {
    std::string operator()(const std::string& format) const {
        return format == "%count% of %all%" ? "%count% von %all%" : "(" + format + ")";
    }
};

struct Upper {
    static inline const std::string fixed = "%x%!";
    const std::string& operator()(const std::string&) const { return fixed; }
};

TEST(QelInfoTest, TranslatesOnlyTranslatableFormats) {
    const QelInfo info =
        formatted("%count% of %all%", {QelInfo("3", "count", false), QelInfo("all of %n%", "all", true)});
    EXPECT_EQ(info.toStringWithTranslator<German>(), "3 von (all of )");
    EXPECT_EQ(info.toStringWithTranslator<QelNullTranslator>(), "3 of all of ");
}

TEST(QelInfoTest, DoesNotTranslateExplicitFormat) {
    const QelInfo info = formatted("unused", {parameter("all", "x")});
    EXPECT_EQ(info.toStringWithTranslator<German>("only %all%"), "only (x)");
    EXPECT_EQ(info.toStringWithTranslator<German>(""), "");
}

TEST(QelInfoTest, TranslatorMayReturnReference) {
    EXPECT_EQ(formatted("", {QelInfo("y", "x", false)}).toStringWithTranslator<Upper>(), "y!");
}

// --- Paths

TEST(QelInfoTest, PathSelectsNestedParameter) {
    QelInfo a("A:%b%", "a", true);
    a.addParameter(parameter("b", "B"));
    const QelInfo info = formatted("top %a%", {a});
    EXPECT_EQ(info.getParameterByPath("/a/b"), "B");
    EXPECT_EQ(info.getParameterByPath("a/b"), "B");
    EXPECT_EQ(info.getParameterByPath("//a///b"), "B");
    EXPECT_EQ(info.getParameterByPath("a"), "A:B");
    for (const char* const own : {"", "/", "///"})
        EXPECT_EQ(info.getParameterByPath(own), "top A:B") << own;
}

TEST(QelInfoTest, PathToMissingParameterIsEmpty) {
    const QelInfo info = formatted("top", {parameter("a", "A")});
    for (const char* const path : {"b", "b/a", "a/b", "a/b/c", "A"})
        EXPECT_EQ(info.getParameterByPath(path), "") << path;
}

TEST(QelInfoTest, LastSegmentSelectsAllParametersWithName) {
    QelInfo first("1", "a", true);
    first.addParameter(parameter("b", "x")).addParameter(parameter("b", "y"));
    QelInfo second("2", "a", true);
    second.addParameter(parameter("b", "no"));
    const QelInfo info = formatted("", {first, second});
    EXPECT_EQ(info.getParameterByPath("a"), "1,2");
    EXPECT_EQ(info.getParameterByPath("a/b"), "x,y");
    EXPECT_EQ(info.getParameterByPath("a/"), "1") << "a trailing slash selects the first one";
}

// --- Limits

TEST(QelInfoTest, ReadsParametersNestedToDepthLimit) {
    // The info's own element is the first level, the text of the innermost parameter the last.
    constexpr int levels = static_cast<int>(QelLimits::depth) - 2;
    const QelInfo deep = nested(levels);
    std::string text;
    ASSERT_EQ(deep.serializeToString(text), 0) << getErrorMessage();
    QelInfo read;
    ASSERT_EQ(read.deserializeFromString(text.c_str()), 0) << getErrorMessage();
    EXPECT_EQ(read, deep);
    EXPECT_EQ(read.toString(), std::string(levels, '<') + "end" + std::string(levels, '>'));
    std::string path;
    for (int level = 0; level < levels; ++level)
        path += "/p";
    EXPECT_EQ(read.getParameterByPath(path), "end");
    EXPECT_EQ(read.getParameterByPath(path + "/p"), "");

    const std::string before = text;
    EXPECT_EQ(nested(levels + 1).serializeToString(text), QelInfo::outOfResources) << "one level too many";
    EXPECT_EQ(text, before);
}

TEST(QelInfoTest, RejectsParametersNestedBeyondDepthLimit) {
    std::string text = "<message><info>";
    for (unsigned level = 0; level < QelLimits::depth; ++level)
        text += "<parameter>";
    for (unsigned level = 0; level < QelLimits::depth; ++level)
        text += "</parameter>";
    QelInfo info("kept", "", true);
    EXPECT_EQ(info.deserializeFromString((text + "</info></message>").c_str()), QelInfo::badText);
    EXPECT_EQ(info.text, "kept");
}

TEST(QelInfoTest, TruncatesExponentialExpansion) {
    clearErrorMessage();
    EXPECT_EQ(nested(10, "%p%%p%").toString().size(), 3U << 10);
    EXPECT_EQ(getErrorMessage(), "");
    const std::string filler(10'000, '.');
    for (const std::string& format : {"%p%%p%" + filler, "%p%%p%%" + filler + "%"}) {
        EXPECT_LE(nested(200, format).toString().size(), QelInfo::expansionLimit);
        EXPECT_EQ(getErrorMessage(), "expanding an info takes more than 67108864 characters; its text is truncated");
        clearErrorMessage();
    }
    EXPECT_EQ(nested(200, "%p%%p%%q%").getParameterByPath("p/q"), "") << "a path expands only the selected parameters";
    EXPECT_EQ(getErrorMessage(), "");
}

TEST(QelInfoTest, ExpandsTextOfExactlyTheBudget) {
    clearErrorMessage();
    // The budget counts the characters of each format, plus one per format.
    EXPECT_EQ(QelInfo(std::string(QelInfo::expansionLimit - 1, '-'), "", false).toString().size(),
              QelInfo::expansionLimit - 1);
    EXPECT_EQ(getErrorMessage(), "");
    EXPECT_EQ(QelInfo(std::string(QelInfo::expansionLimit, '-'), "", false).toString(), "");
    EXPECT_NE(getErrorMessage(), "");
    clearErrorMessage();
}

TEST(QelInfoTest, ParameterMayUseRemainingBudget) {
    const std::string format = "%x%";
    const std::size_t left = QelInfo::expansionLimit - (format.size() + 1);
    clearErrorMessage();
    EXPECT_EQ(formatted(format, {parameter("x", std::string(left - 1, '-'))}).toString().size(), left - 1);
    EXPECT_EQ(getErrorMessage(), "");
    EXPECT_EQ(formatted(format, {parameter("x", std::string(left, '-'))}).toString(), "");
    EXPECT_NE(getErrorMessage(), "");
    clearErrorMessage();
}

TEST(QelInfoTest, TruncatesRepeatedParameter) {
    std::string format;
    for (int i = 0; i < 1000; ++i)
        format += "%x%";
    const QelInfo info = formatted(format, {parameter("x", std::string(1 << 20, '-'))});
    EXPECT_EQ(info.toString().size(), std::size_t{63} << 20) << "the budget left after the format";
}

TEST(QelInfoTest, StopsExactlyAtBudget) {
    // Each text costs its characters plus one.
    constexpr std::size_t costOfFormat = 4;
    constexpr std::size_t longest = QelInfo::expansionLimit - costOfFormat - 1;
    clearErrorMessage();
    EXPECT_EQ(formatted("%x%", {parameter("x", std::string(longest, '-'))}).toString().size(), longest);
    EXPECT_EQ(getErrorMessage(), "");
    EXPECT_EQ(formatted("%x%", {parameter("x", std::string(longest + 1, '-'))}).toString().size(), 0U);
    EXPECT_THAT(getErrorMessage(), HasSubstr("is truncated"));
}

TEST(QelInfoTest, AllocationsDoNotDependOnPlaceholderCount) {
    // Longer than the small string buffer.
    const std::string filler(100, '-');
    const auto cost = [&](int count) {
        QelInfo info("", "", true);
        for (int i = 0; i < count; ++i) {
            const std::string name = "a_name_too_long_to_be_held_in_place_" + std::to_string(i);
            info.text += filler + '%' + name + '%';
            QelInfo inner(filler + "%value%", name, true);
            info.addParameter(inner.addParameter(parameter("value", filler)));
        }
        return TestSupport::allocationsOf([&] { EXPECT_EQ(info.toString().size(), 300U * unsigned(count)); });
    };
    constexpr std::size_t someDoublings = 10;
    EXPECT_LE(cost(1000), cost(1) + someDoublings);
}

// --- Marshalling

TEST(QelInfoTest, WritesTextFirstAndNoKeys) {
    const TestTree tree;
    QelInfo info("%x%", "top", true);
    info.addParameter(QelInfo("1", "x", false));
    ASSERT_EQ(tree->putObj(info, 1134), 0);
    tree->seek(1134);
    EXPECT_EQ(tree->curType(), "env:info");
    std::vector<int> ids;
    for (int more = tree->firstChild(); more == 0; more = tree->nextSibling())
        ids.push_back(tree->curID());
    EXPECT_THAT(ids, testing::ElementsAre(1224, 1026, 1912, 1017));
    EXPECT_EQ(tree->curType(), "") << "a parameter has no complex type";
    EXPECT_EQ(countChildren(*tree), 2) << "text and name";
    EXPECT_EQ(childValue(*tree, 1026), "x");
    EXPECT_EQ(childValue(*tree, 1224), "MQ==");
}

TEST(QelInfoTest, RoundTrips) {
    QelInfo info("%x% \xFF\n", "top", false);
    info.addParameter(parameter("x", "1")).addParameter(parameter("x", "2")).addParameter(nested(3));
    const TestTree tree;
    ASSERT_EQ(tree->putObj(info, 1134), 0);
    QelInfo read("old", "old", true);
    read.addParameter(parameter("old", "old"));
    ASSERT_EQ(tree->getObj(read, 1134), 0);
    EXPECT_EQ(read, info);
}

TEST(QelInfoTest, RejectsMissingTextOrName) {
    TestSupport::expectRequired(QelInfo("text", "name", true), {1224, 1026});
}

TEST(QelInfoTest, RejectsParameterWithoutName) {
    const TestTree tree;
    ASSERT_EQ(tree->putObject(formatted("%x%", {parameter("x", "1")}), QelInfo::Writer(), 0), 0);
    tree->seek(1017);
    tree->deleteChild(1026);
    tree->seekUp();
    QelInfo read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_EQ(tree->curName(), "/");
}

// --- Serialisation to a string

TEST(QelInfoTest, StringContainsOnlyTheInfo) {
    std::string text;
    ASSERT_EQ(formatted("%x%", {parameter("x", "1")}).serializeToString(text), 0);
    EXPECT_THAT(text, HasSubstr("<info xmlns=\"urn:qel:env\" xsi:type=\"env:info\">"));
    QelInfo read;
    ASSERT_EQ(read.deserializeFromString(text.c_str()), 0);
    EXPECT_EQ(read.toString(), "1");
}

TEST(QelInfoTest, InvalidStringLeavesInfoUnchanged) {
    QelInfo info("kept", "name", false);
    const QelInfo before = info;
    EXPECT_EQ(info.deserializeFromString(nullptr), -6);
    for (const char* const bad : {"", "no message", "<message>", "<message/>", "<message><data/></message>",
                                  "<message><info/></message>", "<message><info><name>x</name></info></message>"})
        EXPECT_EQ(info.deserializeFromString(bad), -5) << bad;
    EXPECT_EQ(info, before);
}

// --- Against a model

/// Reference implementation of QelInfo.
struct Model {
    std::string name;
    std::string format;
    std::vector<Model> parameters;

    [[nodiscard]] std::string text() const {
        std::vector<std::string> pieces{""};
        for (const char c : format)
            if (c == '%')
                pieces.emplace_back();
            else
                pieces.back() += c;
        std::string result;
        for (std::size_t i = 0; i < pieces.size(); ++i)
            if (i % 2 == 0)
                result += pieces[i];
            else
                result += i + 1 < pieces.size() ? joined(pieces[i]) : '%' + pieces[i];
        return result;
    }
    [[nodiscard]] std::string joined(const std::string& wanted) const {
        std::string result;
        bool isFirst = true;
        for (const Model& parameter : parameters)
            if (parameter.name == wanted) {
                result += (isFirst ? "" : ",") + parameter.text();
                isFirst = false;
            }
        return result;
    }
    [[nodiscard]] std::string byPath(const std::string& path) const {
        const std::size_t start = path.find_first_not_of('/');
        if (start == std::string::npos)
            return text();
        const std::size_t end = path.find('/', start);
        if (end == std::string::npos)
            return joined(path.substr(start));
        for (const Model& parameter : parameters)
            if (parameter.name == path.substr(start, end - start))
                return parameter.byPath(path.substr(end));
        return {};
    }
    [[nodiscard]] QelInfo info() const {
        QelInfo made(format, name, true);
        for (const Model& parameter : parameters)
            made.addParameter(parameter.info());
        return made;
    }
};

class RandomModel {
public:
    explicit RandomModel(unsigned seed) : m_random(seed) {}

    Model make(int levels, const std::string& name = "top") {
        Model model;
        model.name = name;
        model.format = joined(8, {"%", "%", "%a%", "%b%", "a", "b", "ab", "text", " "});
        for (unsigned left = levels > 0 ? below(5) : 0; left > 0; --left)
            model.parameters.push_back(make(levels - 1, one({"", "a", "a", "b", "ab", "text"})));
        return model;
    }
    std::string path() { return joined(6, {"/", "/", "a", "b", "/a", "/a/", "text", "/b"}); }

private:
    using Words = std::initializer_list<const char*>;

    unsigned below(std::size_t limit) {
        return std::uniform_int_distribution<unsigned>(0, static_cast<unsigned>(limit - 1))(m_random);
    }
    const char* one(Words words) { return words.begin()[below(words.size())]; }
    std::string joined(std::size_t most, Words words) {
        std::string result;
        for (unsigned left = below(most + 1); left > 0; --left)
            result += one(words);
        return result;
    }

    std::mt19937 m_random;
};

TEST(QelInfoTest, TextsAndPathsMatchReferenceModel) {
    RandomModel random(20261121);
    int found = 0;
    for (int run = 0; run < 3000 && !HasFailure(); ++run) {
        const Model model = random.make(3);
        const QelInfo info = model.info();
        ASSERT_EQ(info.toString(), model.text());
        for (int i = 0; i < 5; ++i) {
            const std::string path = random.path();
            ASSERT_EQ(info.getParameterByPath(path), model.byPath(path)) << path;
            found += model.byPath(path).empty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, 1000) << "paths with a result";
}

} // namespace

} // namespace Qel
