#include "QelMessage/QelXmlMarkup.h"

#include "QelCommon/Strings.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelXmlNames.h"
#include "QelMessage/QelXmlText.h"

namespace Qel::QelXmlMarkup {

namespace {

constexpr std::string_view commentStart = "<!--";
constexpr std::string_view commentEnd = "-->";
constexpr std::string_view characterDataStart = "<![CDATA[";
constexpr std::string_view characterDataEnd = "]]>";
constexpr std::string_view instructionStart = "<?";
constexpr std::string_view instructionEnd = "?>";
constexpr auto npos = std::string_view::npos;

/// Scans the markup from one "<" to the next.
class Scan {
public:
    explicit Scan(std::string_view text) noexcept : m_text(text) {}

    std::optional<Fault> run() {
        // find() from npos finds nothing.
        while (!m_fault && (m_at = m_text.find('<', m_at)) != npos) {
            const std::string_view rest = m_text.substr(m_at);
            if (rest.starts_with(commentStart))
                comment();
            else if (rest.starts_with(characterDataStart))
                goPast(characterDataEnd, m_at + characterDataStart.size());
            else if (rest.starts_with(instructionStart))
                instruction();
            else if (rest.starts_with("</") || rest.starts_with("<!"))
                m_at += 2;
            else
                startTag();
        }
        return m_fault;
    }

private:
    void goPast(std::string_view end, std::size_t from) {
        const std::size_t found = m_text.find(end, from);
        m_at = found == npos ? m_text.size() : found + end.size();
    }

    void comment() {
        const std::size_t hyphens = m_text.find("--", m_at + commentStart.size());
        if (hyphens != npos && !m_text.substr(hyphens).starts_with(commentEnd))
            m_fault = {hyphens, "'--' in a comment"};
        goPast("--", m_at + commentStart.size());
    }

    void instruction() {
        const std::size_t start = m_at + instructionStart.size();
        const std::string_view instruction = m_text.substr(start, m_text.find(instructionEnd, start) - start);
        const std::string_view target = instruction.substr(0, instruction.find_first_of(" \t\r\n"));
        goPast(instructionEnd, start);
        const bool isReserved = target != QelXmlNames::reserved && compareNoCase(target, QelXmlNames::reserved) == 0;
        if (!QelXmlText::isName(target) || isReserved)
            m_fault = {start, "invalid processing instruction target: " + std::string(target)};
    }

    void startTag() {
        if (++m_elements > QelLimits::elements)
            m_fault = {m_at, "more than " + std::to_string(QelLimits::elements) + " elements"};
        // Find the ">" that is not inside an attribute value.
        while ((m_at = m_text.find_first_of("\"'>", m_at)) != npos && m_text[m_at] != '>') {
            const char quote = m_text[m_at];
            goPast({&quote, 1}, m_at + 1);
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_elements = 0;
    std::optional<Fault> m_fault;
};

} // namespace

std::optional<Fault> findFault(std::string_view text) {
    return Scan(text).run();
}

} // namespace Qel::QelXmlMarkup
