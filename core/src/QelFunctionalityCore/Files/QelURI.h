#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// A name of the form TYPE://PATH.  Neither part is escaped or interpreted.
class QEL_EXPORT QelURI {
public:
    QelURI() = default;
    QelURI(const QelURI&) = default;
    QelURI& operator=(const QelURI&) = default;
    virtual ~QelURI() = default;

    /// Whether there is a type.
    [[nodiscard]] virtual bool isValid() const;
    /// Splits a string at its first "://".  Without a separator, or with fewer than two characters before it, both
    /// parts become empty: a single letter is a drive.
    virtual void setUri(const std::string& uri);
    /// The string; empty if there is no type.
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
