#include "QelMessage/QelTextCodec.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelLimits.h"
#include "support/RandomTree.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using TestSupport::describe;

constexpr auto root = QelMessageTree::root;

std::string textOf(const QelMessageTree& tree, const QelEnvelope& envelope = {}) {
    std::string text;
    EXPECT_EQ(QelTextCodec::writeMessage(tree, envelope, text), 0) << getErrorMessage();
    return text;
}

/// The tree of a parsed document. If parsing fails, a tree of one element whose value is the error message.
QelMessageTree treeOf(const std::string& text) {
    QelMessageTree tree;
    QelEnvelope envelope;
    if (QelTextCodec::readMessage(text, tree, envelope) == 0)
        return tree;
    QelMessageTree failed;
    failed.setValue(root, getErrorMessage());
    return failed;
}
std::vector<std::string> linesOf(const std::string& text) {
    return describe(treeOf(text));
}

/// The error message of a failed read; empty on success.
std::string failure(const std::string& text) {
    QelMessageTree tree;
    QelEnvelope envelope;
    return QelTextCodec::readMessage(text, tree, envelope) == 0 ? "" : getErrorMessage();
}

/// Appends one element to the root of a message.
QelMessageTree::Index addName(QelMessageTree& tree) {
    return tree.appendChild(root, 1026, 0);
}

// ----------------------------------------------------------------------------------------------------- the document

TEST(QelTextCodecTest, MessageIsADocumentWithTheEnvelopeAsAttributes) {
    QelMessageTree tree;
    const auto environment = tree.appendChild(root, 1624, 292);
    tree.setType(environment, 292, 122);
    tree.setValue(tree.appendChild(environment, 1026, 292), "a & b");
    tree.appendChild(environment, tree.intern(QelNameKind::element, "log_level"), 0);
    QelEnvelope envelope;
    envelope.time = 1795167000;
    envelope.requestId = "7";
    envelope.sender = "s";
    envelope.session = "x";
    envelope.origin = "o";
    envelope.subscriptions = {"events_subscription", "alerts_subscription"};
    EXPECT_EQ(textOf(tree, envelope),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:env=\"urn:qel:env\" "
              "time=\"2026-11-20T09:30:00Z\" request-id=\"7\" sender=\"s\" session=\"x\" origin=\"o\" "
              "subscriptions=\"events_subscription alerts_subscription\">\n"
              "  <environment xmlns=\"urn:qel:env\" xsi:type=\"env:env\">\n"
              "    <name>a &amp; b</name>\n"
              "    <log_level xmlns=\"\" />\n"
              "  </environment>\n"
              "</message>\n");
}

TEST(QelTextCodecTest, UnsetEnvelopeHasNoAttributes) {
    EXPECT_EQ(textOf(QelMessageTree()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                        "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" />\n");
}

TEST(QelTextCodecTest, EnvelopeRoundTrips) {
    QelEnvelope envelope;
    envelope.time = -1;
    envelope.requestId = "\x01 & \r\n";
    envelope.origin = "o";
    envelope.subscriptions = {"b", "a", "b"};
    const std::string text = textOf(QelMessageTree(), envelope);
    QelMessageTree tree;
    QelEnvelope read;
    ASSERT_EQ(QelTextCodec::readMessage(text, tree, read), 0) << getErrorMessage();
    EXPECT_EQ(read, envelope);
}

TEST(QelTextCodecTest, EmptyEnvelopeAttributesAreUnset) {
    QelMessageTree tree;
    QelEnvelope envelope;
    ASSERT_EQ(QelTextCodec::readMessage(
                  "<message time='' request-id='' sender='' session='' origin='' subscriptions=' '/>", tree, envelope),
              0);
    EXPECT_EQ(envelope, QelEnvelope());
}

TEST(QelTextCodecTest, ElementDocumentHasTheDeclarationsItNeeds) {
    QelMessageTree tree;
    const auto outer = tree.appendChild(root, 1624, 292);
    tree.setType(tree.appendChild(outer, 1026, 292), 282, 107);
    std::string text;
    ASSERT_EQ(QelTextCodec::writeElement(tree, outer, text), 0);
    EXPECT_EQ(text, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<environment xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                    "xmlns:backup=\"urn:qel:backup\" xmlns=\"urn:qel:env\">\n"
                    "  <name xsi:type=\"backup:" +
                        tree.name(QelNameKind::type, 107) +
                        "\" />\n"
                        "</environment>\n");
}

TEST(QelTextCodecTest, RootAsElementIsNamedMessageAndHasNoEnvelope) {
    QelMessageTree tree;
    addName(tree);
    std::string text;
    ASSERT_EQ(QelTextCodec::writeElement(tree, root, text), 0);
    QelMessageTree target;
    ASSERT_EQ(QelTextCodec::readChild(text, target, root), 0);
    EXPECT_THAT(describe(target), ElementsAre("/ {} <:> = ''", "  message {} <:> = ''", "    name {} <:> = ''"));
}

// ----------------------------------------------------------------------------------------------------------- values

TEST(QelTextCodecTest, ElementWithoutChildrenKeepsItsWhiteSpace) {
    EXPECT_THAT(linesOf("<message><name>  a\n </name><name> </name></message>"),
                ElementsAre("/ {} <:> = ''", "  name {} <:> = '  a\n '", "  name {} <:> = ' '"));
}

TEST(QelTextCodecTest, WhiteSpaceBetweenChildrenIsIgnored) {
    EXPECT_THAT(linesOf("<message>\n  <name/>\n  <name/>\n</message>"),
                ElementsAre("/ {} <:> = ''", "  name {} <:> = ''", "  name {} <:> = ''"));
}

TEST(QelTextCodecTest, TextNextToChildrenIsTheValue) {
    EXPECT_THAT(
        linesOf("<message><data>a <name/>\n b<name/> </data></message>"),
        ElementsAre("/ {} <:> = ''", "  data {} <:> = 'a \n b'", "    name {} <:> = ''", "    name {} <:> = ''"));
}

TEST(QelTextCodecTest, CdataSectionIsNeverIgnored) {
    EXPECT_THAT(linesOf("<message><data><![CDATA[ <&> ]]><name/></data><data><![CDATA[ ]]><name/></data></message>"),
                ElementsAre("/ {} <:> = ''", "  data {} <:> = ' <&> '", "    name {} <:> = ''", "  data {} <:> = ' '",
                            "    name {} <:> = ''"));
}

TEST(QelTextCodecTest, WhiteSpaceValueNextToChildrenIsWrittenAsCdata) {
    QelMessageTree tree;
    const auto data = tree.appendChild(root, 1307, 0);
    tree.setValue(data, " \n");
    tree.appendChild(data, 1026, 0);
    const std::string text = textOf(tree);
    EXPECT_THAT(text, HasSubstr("<data><![CDATA[ \n]]>"));
    EXPECT_EQ(linesOf(text), describe(tree));
}

TEST(QelTextCodecTest, CommentsAndProcessingInstructionsAreIgnored) {
    EXPECT_THAT(linesOf("<!-- a --><message><?x y?><name>a<!-- b -->b</name><!-- c --></message><!-- d -->"),
                ElementsAre("/ {} <:> = ''", "  name {} <:> = 'ab'"));
}

TEST(QelTextCodecTest, LineEndsAreNormalised) {
    EXPECT_THAT(linesOf("<message>\r\n<name>a\r\nb</name>\r\n</message>"),
                ElementsAre("/ {} <:> = ''", "  name {} <:> = 'a\nb'"));
}

TEST(QelTextCodecTest, ReferencesAreDecoded) {
    EXPECT_THAT(linesOf("<message><name>&lt;&#65;&#x42;&amp;lt;&#xE9;&#13;</name></message>"),
                ElementsAre("/ {} <:> = ''", "  name {} <:> = '<AB&lt;\xC3\xA9\r'"));
}

TEST(QelTextCodecTest, BytesNotAllowedInXmlAreBase64Encoded) {
    for (const std::string& value :
         {std::string("\0", 1), std::string("a\rb"), std::string("\x1F"), std::string("\xFF"), std::string("\xC0\x80"),
          std::string("\xED\xA0\x80"), std::string("\xEF\xBF\xBE"), std::string("\xE2\x82")}) {
        QelMessageTree tree;
        tree.setValue(addName(tree), value);
        const std::string text = textOf(tree);
        EXPECT_THAT(text, HasSubstr("encoding=\"base64\""));
        EXPECT_EQ(linesOf(text), describe(tree));
    }
    for (const char* const value : {"\t\n", "\x7F", "\xC3\xA9", "\xF4\x8F\xBF\xBF", "]]>", "\"'<>&"}) {
        QelMessageTree tree;
        tree.setValue(addName(tree), value);
        const std::string text = textOf(tree);
        EXPECT_THAT(text, Not(HasSubstr("base64")));
        EXPECT_EQ(linesOf(text), describe(tree));
    }
}

// ---------------------------------------------------------------------------------------------------- names, types

TEST(QelTextCodecTest, NamesNotAllowedInXmlAreEscaped) {
    QelMessageTree tree;
    for (const char* const name : {"", "1st", "a b", "a:b", "_x41_", "gr\xC3\xBC", "-"})
        tree.appendChild(root, tree.intern(QelNameKind::element, name), 0);
    const std::string text = textOf(tree);
    for (const char* const name :
         {"<_x_ ", "<_x31_st ", "<a_x20_b ", "<a_x3A_b ", "<_x5F_x41_ ", "<gr_xC3__xBC_ ", "<_x2D_ "})
        EXPECT_THAT(text, HasSubstr(name));
    EXPECT_EQ(linesOf(text), describe(tree));
}

TEST(QelTextCodecTest, IdWithoutANameIsWrittenAsItsNumberedSpelling) {
    constexpr int unnamed = 99999;
    QelMessageTree tree;
    const auto node = tree.appendChild(root, unnamed, unnamed);
    tree.setType(node, unnamed, unnamed);
    EXPECT_TRUE(tree.setAttribute(node, unnamed, "v"));
    const std::string text = textOf(tree);
    EXPECT_THAT(text, HasSubstr("<e99999 xmlns=\"urn:qel:n99999\" xsi:type=\"n99999:t99999\" a99999=\"v\" />"));
    const QelMessageTree read = treeOf(text);
    const auto& each = read.node(read.node(root).firstChild);
    EXPECT_EQ(each.name, unnamed);
    EXPECT_EQ(each.nameSpace, unnamed);
    EXPECT_EQ(each.type, unnamed);
    EXPECT_EQ(each.typeNameSpace, unnamed);
}

TEST(QelTextCodecTest, PrefixesAreResolvedWhereverTheyAreDeclared) {
    EXPECT_THAT(linesOf("<message xmlns:p='urn:qel:env' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>"
                        "<p:data xmlns='urn:qel:backup'><name i:type='p:os'/>"
                        "<name xmlns:p='urn:qel:backup' i:type=' p:x '/><name i:type='p:y'/></p:data>"
                        "<name/></message>"),
                ElementsAre("/ {} <:> = ''", "  data {env} <:> = ''", "    name {backup} <env:os> = ''",
                            "    name {backup} <backup:x> = ''", "    name {backup} <env:y> = ''",
                            "  name {} <:> = ''"));
}

TEST(QelTextCodecTest, TypeWithoutAPrefixHasNoNamespace) {
    QelMessageTree tree;
    tree.setType(tree.appendChild(root, 1026, 292), 0, 122);
    const std::string text = textOf(tree);
    EXPECT_THAT(text, HasSubstr("xsi:type=\"env\""));
    EXPECT_EQ(linesOf(text), describe(tree));
}

TEST(QelTextCodecTest, NamespacesWithUnusualNamesGetDistinctPrefixesAndUris) {
    QelMessageTree tree;
    for (const char* const name : {"xsi", "xml", "XMLish", "a b", "1%", "\xFF"}) {
        const auto node = tree.appendChild(root, 1026, tree.intern(QelNameKind::nameSpace, name));
        tree.setType(node, tree.intern(QelNameKind::nameSpace, name), 122);
    }
    const std::string text = textOf(tree);
    EXPECT_THAT(text, HasSubstr("xmlns:_x78_si=\"urn:qel:xsi\""));
    EXPECT_THAT(text, HasSubstr("xmlns:_x78_ml=\"urn:qel:xml\""));
    EXPECT_THAT(text, HasSubstr("xmlns:_x58_MLish=\"urn:qel:XMLish\""));
    EXPECT_THAT(text, HasSubstr("xmlns:a_x20_b=\"urn:qel:a%20b\""));
    EXPECT_THAT(text, HasSubstr("xmlns:_x31__x25_=\"urn:qel:1%25\""));
    EXPECT_EQ(linesOf(text), describe(tree));
}

TEST(QelTextCodecTest, SchemaLocationHintsAreIgnored) {
    EXPECT_EQ(failure("<message xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='a b' "
                      "xsi:noNamespaceSchemaLocation='c'/>"),
              "");
}

// ------------------------------------------------------------------------------------------------------- attributes

TEST(QelTextCodecTest, AttributesWithAnyNameAndValueRoundTrip) {
    QelMessageTree tree;
    for (const auto node : {root, addName(tree)}) {
        for (const char* const name :
             {"encoding", "xmlns", "base64-attributes", "time", "session", "a b", "", "type", "x"})
            EXPECT_TRUE(tree.setAttribute(node, tree.intern(QelNameKind::attribute, name), "v\n\t\"'<&> "));
        EXPECT_TRUE(tree.setAttribute(node, 5, std::string("\0\r", 2)));
        EXPECT_TRUE(tree.setAttribute(node, 6, ""));
    }
    QelEnvelope envelope;
    envelope.session = "mine";
    const std::string text = textOf(tree, envelope);
    QelMessageTree read;
    QelEnvelope readEnvelope;
    ASSERT_EQ(QelTextCodec::readMessage(text, read, readEnvelope), 0) << getErrorMessage();
    EXPECT_EQ(describe(read), describe(tree)) << text;
    EXPECT_EQ(readEnvelope, envelope);
}

// ------------------------------------------------------------------------------------------------------ round trips

TEST(QelTextCodecTest, RandomTreesRoundTripInBothForms) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        QelMessageTree tree;
        TestSupport::RandomTree(seed).fill(tree, 40);
        const std::string text = textOf(tree);
        const QelMessageTree read = treeOf(text);
        ASSERT_EQ(describe(read), describe(tree)) << seed << '\n' << text;
        EXPECT_EQ(textOf(read), text) << seed;

        const QelEnvelope envelope;
        std::string binary[2];
        for (int i = 0; i < 2; ++i) {
            const QelMessageTree& each = i == 0 ? tree : read;
            std::size_t size = 0;
            ASSERT_EQ(QelBinaryCodec::measure(each, root, &envelope, size), 0);
            binary[i].resize(size);
            ASSERT_EQ(QelBinaryCodec::write(each, root, &envelope, binary[i].data(), size), 0);
        }
        EXPECT_EQ(binary[0], binary[1]) << seed;
        QelMessageTree fromBinary;
        QelEnvelope ignored;
        ASSERT_EQ(QelBinaryCodec::readMessage(binary[1], fromBinary, ignored), 0);
        EXPECT_EQ(textOf(fromBinary), text) << seed;
    }
}

TEST(QelTextCodecTest, RandomElementsRoundTripAsChildrenAndAsContent) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        QelMessageTree tree;
        TestSupport::RandomTree random(seed);
        random.fill(tree, 20);
        const auto top = tree.node(root).lastChild;
        std::string text;
        ASSERT_EQ(QelTextCodec::writeElement(tree, top, text), 0);
        QelMessageTree target;
        const auto parent = target.appendChild(root, 1307, 292);
        ASSERT_EQ(QelTextCodec::readChild(text, target, parent), 0) << getErrorMessage();
        EXPECT_EQ(describe(target, target.node(parent).lastChild), describe(tree, top)) << seed;

        tree.setValue(top, "a plain value");
        ASSERT_EQ(QelTextCodec::writeContent(tree, top, text), 0);
        ASSERT_EQ(QelTextCodec::replaceContent(text, target, parent), 0) << getErrorMessage() << '\n' << text;
        const auto expected = describe(tree, top);
        const auto found = describe(target, parent);
        EXPECT_EQ(std::vector(found.begin() + 1, found.end()), std::vector(expected.begin() + 1, expected.end()));
        EXPECT_EQ(target.node(parent).value.view(), "a plain value");
    }
}

// -------------------------------------------------------------------------------------------------- malformed input

TEST(QelTextCodecTest, RejectsMalformedTextWithItsLocation) {
    EXPECT_EQ(failure(""), "line 1, column 1: no root element");
    EXPECT_THAT(failure("<message>\n  <name>\n</message>"), HasSubstr("line 3, column "));
    EXPECT_EQ(failure("<message/>\n<message/>"), "line 2, column 2: more than one root element");
    EXPECT_THAT(failure("<message/>\n junk"), HasSubstr("text outside the root element"));
    EXPECT_THAT(failure("<![CDATA[ ]]><message/>"), HasSubstr("text outside the root element"));
    EXPECT_EQ(failure("<massage/>"), "line 1, column 2: the root element is 'massage', not 'message'");
    EXPECT_EQ(failure("<message>\n<name>\xC3\xA9&x;</name></message>"),
              "line 2, column 8: unknown or malformed reference");
    EXPECT_EQ(failure("<message>\n\xC3\xA9\x01</message>"),
              "line 2, column 2: a character not allowed in XML, or malformed UTF-8");
    EXPECT_THAT(failure("<message>\xFF</message>"), HasSubstr("malformed UTF-8"));
    EXPECT_THAT(failure(std::string("<message>\0</message>", 20)), HasSubstr("line 1, column 10"));
    EXPECT_THAT(failure("<message"), HasSubstr("line 1, column "));
    EXPECT_THAT(failure("<message a='1' a='2'/>"), HasSubstr("duplicate attribute a"));
    EXPECT_THAT(failure("<message a5='1' _x61_5='2'/>"), HasSubstr("duplicate attribute"));
    EXPECT_THAT(failure("<message xmlns='urn:qel:env' xmlns='urn:qel:env'/>"), HasSubstr("duplicate attribute xmlns"));
    EXPECT_THAT(failure("<message time='1' time='2'/>"), HasSubstr("duplicate attribute time"));
    EXPECT_THAT(failure("<message a='<'/>"), HasSubstr("'<' in the value of attribute a"));
    EXPECT_THAT(failure("<message a=1/>"), HasSubstr("line 1, column "));
    EXPECT_THAT(failure("<message a='&lt'/>"), HasSubstr("reference"));
    EXPECT_THAT(failure("<message>]]></message>"), HasSubstr("']]>' in character data"));
    EXPECT_THAT(failure("<message :a='1'/>"), HasSubstr("invalid name: :a"));
    EXPECT_THAT(failure("<message><a:b:c xmlns:a='urn:qel:env'/></message>"), HasSubstr("invalid name: a:b:c"));
}

TEST(QelTextCodecTest, RejectsTwoHyphensInAComment) {
    EXPECT_EQ(failure("<message>\n<!-- a -- b --></message>"), "line 2, column 8: '--' in a comment");
    EXPECT_EQ(failure("<!-- a --->\n<message/>"), "line 1, column 8: '--' in a comment");
    EXPECT_EQ(failure("<!----><message><!-- a - b --><![CDATA[<!-- a -- b -->]]></message><!--->-->"), "");
}

TEST(QelTextCodecTest, RejectsAProcessingInstructionWithoutATarget) {
    for (const char* const target : {"XML", "xMl", "p:q", "1", "\xC3\x97", "p?q"})
        EXPECT_THAT(failure("<message><?" + std::string(target) + " a?></message>"), HasSubstr("line 1, column "))
            << target;
    EXPECT_THAT(failure("<message><?Xml a?></message>"), HasSubstr("invalid processing instruction target: Xml"));
    EXPECT_EQ(failure("<message><?p?><?xmlp a?b?><?p\t-- ?></message>"), "");
}

TEST(QelTextCodecTest, RejectsNamesThatXmlForbids) {
    EXPECT_THAT(failure("<message><\xC3\x97/></message>"), HasSubstr("line 1, column 11: invalid name: \xC3\x97"));
    EXPECT_THAT(failure("<message><a\xC3\xB7/></message>"), HasSubstr("invalid name: a\xC3\xB7"));
    EXPECT_THAT(failure("<message><\xC2\xB7/></message>"), HasSubstr("invalid name: \xC2\xB7"));
    EXPECT_THAT(failure("<message \xC2\xB7='1'/>"), HasSubstr("invalid name: \xC2\xB7"));
    EXPECT_THAT(failure("<message><p:1 xmlns:p='urn:qel:env'/></message>"), HasSubstr("invalid name: p:1"));
    EXPECT_THAT(failure("<message xmlns:1='urn:qel:env'/>"), HasSubstr("invalid name: xmlns:1"));
    EXPECT_EQ(failure("<message><\xC3\xA9\xC2\xB7\xCC\x80 \xE2\x81\xB0='1'/></message>"), "");
}

TEST(QelTextCodecTest, IgnoresAttributesDefinedByXml) {
    const std::string text = "<message xml:lang='en'><name xml:space='preserve' xml:id='a'>x</name></message>";
    EXPECT_EQ(failure(text), "");
    EXPECT_EQ(linesOf(text), linesOf("<message><name>x</name></message>"));
    EXPECT_EQ(failure("<message xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'/>"), "");
}

TEST(QelTextCodecTest, RejectsRebindingOfReservedPrefixes) {
    for (const char* const declaration :
         {"xmlns:xml='urn:qel:env'", "xmlns:p='http://www.w3.org/XML/1998/namespace'",
          "xmlns='http://www.w3.org/XML/1998/namespace'", "xmlns:p='http://www.w3.org/2000/xmlns/'",
          "xmlns='http://www.w3.org/2000/xmlns/'"})
        EXPECT_THAT(failure("<message " + std::string(declaration) + "/>"), HasSubstr("invalid declaration of prefix"))
            << declaration;
    EXPECT_THAT(failure("<message><xml:a/></message>"), HasSubstr("unknown namespace"));
}

TEST(QelTextCodecTest, RejectsInvalidXmlDeclarations) {
    const auto declared = [](const std::string& attributes) { return failure("<?xml " + attributes + "?><message/>"); };
    EXPECT_EQ(declared("version='1.0' encoding='UTF-8' standalone='yes'"), "");
    EXPECT_EQ(declared("version='1.0' standalone='no'"), "");
    EXPECT_THAT(declared("encoding='UTF-8' version='1.0'"),
                HasSubstr("unknown or misplaced in the XML declaration: version"));
    EXPECT_THAT(declared("version='1.0' standalone='yes' encoding='UTF-8'"),
                HasSubstr("misplaced in the XML declaration"));
    EXPECT_THAT(declared("version='1.0' version='1.0'"), HasSubstr("misplaced in the XML declaration"));
    EXPECT_THAT(declared("version='1.0' charset='UTF-8'"), HasSubstr("misplaced in the XML declaration"));
    EXPECT_THAT(declared("encoding='UTF-8'"), HasSubstr("the XML version is not 1.0"));
    EXPECT_THAT(declared("version='1.0' standalone='maybe'"), HasSubstr("standalone is neither yes nor no"));
    EXPECT_THAT(failure("<?XML version='1.0'?><message/>"), HasSubstr("line 1, column 3"));
}

TEST(QelTextCodecTest, RejectsSurrogates) {
    EXPECT_THAT(failure("<message>\xED\xBF\xBF</message>"), HasSubstr("line 1, column 10"));
    EXPECT_EQ(failure("<message>\xEE\x80\x80&#xE000;&#xD7FF;</message>"), "");
}

TEST(QelTextCodecTest, RejectsATypeUnderTwoPrefixes) {
    const std::string both = "xmlns:p='http://www.w3.org/2001/XMLSchema-instance' "
                             "xmlns:q='http://www.w3.org/2001/XMLSchema-instance' ";
    EXPECT_EQ(failure("<message " + both + "p:type='a'/>"), "");
    EXPECT_THAT(failure("<message " + both + "p:type='a' q:type='b'/>"), HasSubstr("duplicate attribute type"));
}

TEST(QelTextCodecTest, RejectsReferencesToNonCharacters) {
    for (const char* const reference : {"&#0;", "&#1;", "&#xD800;", "&#xDFFF;", "&#xFFFE;", "&#x110000;",
                                        "&#99999999999;", "&#;", "&#x;", "&#xg;", "&;", "&nbsp;"})
        EXPECT_THAT(failure(std::string("<message>") + reference + "</message>"), HasSubstr("reference")) << reference;
}

TEST(QelTextCodecTest, RejectsDocumentTypeDeclarations) {
    EXPECT_THAT(failure("<!DOCTYPE message [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><message>&x;</message>"),
                HasSubstr("document type declarations are not allowed"));
    EXPECT_THAT(failure("<!DOCTYPE message><message/>"), HasSubstr("document type declarations are not allowed"));
}

TEST(QelTextCodecTest, AcceptsOnlyXml10InUtf8) {
    EXPECT_EQ(failure("<?xml version='1.0' encoding='utf-8'?><message/>"), "");
    EXPECT_EQ(failure("\xEF\xBB\xBF<?xml version='1.0'?><message/>"), "");
    EXPECT_THAT(failure("<?xml version='1.0' encoding='ISO-8859-1'?><message/>"), HasSubstr("is not UTF-8"));
    EXPECT_THAT(failure("<?xml version='1.1'?><message/>"), HasSubstr("is not 1.0"));
    EXPECT_THAT(failure("\n<?xml version='1.0'?><message/>"), HasSubstr("is not at the start of the document"));
    EXPECT_THAT(failure(std::string("\xFF\xFE<\0m\0/\0>\0", 10)), HasSubstr("malformed UTF-8"));
}

TEST(QelTextCodecTest, RejectsUnknownNamespaces) {
    EXPECT_THAT(failure("<message><p:name/></message>"), HasSubstr("undeclared prefix: p"));
    EXPECT_THAT(failure("<message p:a='1'/>"), HasSubstr("undeclared prefix: p"));
    EXPECT_THAT(failure("<message xmlns='http://example.org/'/>"), HasSubstr("unknown namespace"));
    EXPECT_THAT(failure("<message xmlns='urn:qel:'/>"), HasSubstr("unknown namespace"));
    EXPECT_THAT(failure("<message xmlns='urn:qel:a%2'/>"), HasSubstr("unknown namespace"));
    EXPECT_THAT(failure("<message xmlns:p=''/>"), HasSubstr("invalid declaration of prefix"));
    EXPECT_THAT(failure("<message xmlns:xmlns='urn:qel:env'/>"), HasSubstr("invalid declaration of prefix"));
    EXPECT_THAT(failure("<message xmlns:p='urn:qel:env' p:a='1'/>"), HasSubstr("unknown attribute: a"));
    EXPECT_THAT(failure("<message xmlns:p='http://www.w3.org/2001/XMLSchema-instance' p:nil='1'/>"),
                HasSubstr("unknown attribute: nil"));
}

TEST(QelTextCodecTest, RejectsInvalidTypes) {
    const auto typed = [](const std::string& type) {
        return failure("<message xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='" + type + "'/>");
    };
    EXPECT_THAT(typed("p:x"), HasSubstr("undeclared prefix: p"));
    EXPECT_THAT(typed(""), HasSubstr("invalid type name"));
    EXPECT_THAT(typed("a b"), HasSubstr("invalid type name"));
    EXPECT_THAT(typed(":a"), HasSubstr("invalid type name"));
    EXPECT_THAT(typed("xsi:a"), HasSubstr("unknown namespace"));
}

TEST(QelTextCodecTest, RejectsInvalidEncodings) {
    EXPECT_THAT(failure("<message encoding='rot13'>a</message>"), HasSubstr("unknown encoding: rot13"));
    EXPECT_THAT(failure("<message encoding='base64'>a</message>"), HasSubstr("malformed base64"));
    EXPECT_THAT(failure("<message session='a' base64-attributes='session'/>"),
                HasSubstr("malformed base64 in attribute session"));
    EXPECT_THAT(failure("<message time='yesterday'/>"), HasSubstr("invalid time: yesterday"));
}

std::string nested(unsigned depth) {
    std::string text = "<message>";
    for (unsigned i = 0; i < depth; ++i)
        text += "<a>";
    for (unsigned i = 0; i < depth; ++i)
        text += "</a>";
    return text + "</message>";
}

TEST(QelTextCodecTest, RejectsTooDeepInput) {
    EXPECT_EQ(failure(nested(QelLimits::depth)), "");
    EXPECT_EQ(failure(nested(QelLimits::depth + 1)), "line 1, column 779: elements are nested deeper than 256");
    EXPECT_THAT(failure(nested(300000)), HasSubstr("nested deeper than 256"));
}

TEST(QelTextCodecTest, RejectsTooLongInput) {
    EXPECT_THAT(failure("<message>" + std::string(QelLimits::messageBytes, ' ') + "</message>"),
                HasSubstr("longer than 67108864 bytes"));
}

TEST(QelTextCodecTest, RejectsTooManyAttributes) {
    std::string text = "<message";
    for (unsigned i = 1; i <= QelLimits::attributes; ++i)
        text += " a" + std::to_string(i) + "=''";
    EXPECT_EQ(failure(text + "/>"), "");
    EXPECT_THAT(failure(text + " more=''/>"), HasSubstr("more than 64 attributes"));
}

TEST(QelTextCodecTest, UnreadableTreeIsNotWritten) {
    QelMessageTree tree;
    auto node = root;
    for (unsigned i = 0; i < QelLimits::depth; ++i)
        node = tree.appendChild(node, 1026, 0);
    std::string text = "old";
    EXPECT_EQ(QelTextCodec::writeMessage(tree, {}, text), 0);
    tree.appendChild(node, 1026, 0);
    text = "old";
    EXPECT_NE(QelTextCodec::writeMessage(tree, {}, text), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("deeper than 256"));
    EXPECT_EQ(text, "old");

    QelMessageTree large;
    large.setValue(root, std::string(QelLimits::messageBytes, 'x'));
    EXPECT_NE(QelTextCodec::writeMessage(large, {}, text), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("longer than 67108864 bytes"));
    EXPECT_EQ(text, "old");
}

} // namespace
} // namespace Qel
