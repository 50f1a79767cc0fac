#pragma once

#include <string>

namespace Qel {

/// A name of the form TYPE://PATH.  Neither part is escaped or looked into.
class QelURI {
public:
    QelURI() = default;
    QelURI(const QelURI&) = default;
    QelURI& operator=(const QelURI&) = default;
    virtual ~QelURI() = default;

    /// Whether there is a type.
    [[nodiscard]] virtual bool isValid() const;
    /// Takes both parts from a text, split at its first "://".  A text without that, or with less than two characters
    /// before it, leaves both empty: one letter is a drive.
    virtual void setUri(const std::string& uri);
    /// The text; empty if there is no type.
    [[nodiscard]] virtual std::string getUri() const;

    void setUriType(const std::string& type) { m_type = type; }
    void setUriPath(const std::string& path) { m_path = path; }
    [[nodiscard]] const std::string& getUriType() const { return m_type; }
    [[nodiscard]] const std::string& getUriPath() const { return m_path; }

private:
    std::string m_type;
    std::string m_path;
};

} // namespace Qel
