#pragma once

#include <memory>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

struct QelEnvelope;
class QelMessageTree;

/// The QelMessage that stores its tree in memory.
class QEL_EXPORT QelBinary : public QelMessage {
public:
    QelBinary();

    int create(int argument) override;
    void destroy() override;
    int measureOrFlatten(char* buf, int* len, const QelMessageIterator* cursor) const override;
    [[nodiscard]] char* toTextEx(int format, const std::string& encoding, int version) const override;
    int saveToFile(const std::string& path) const override;
    int fromTextEx(const char* text, int version) override;
    int loadFromFile(const std::string& path) override;
    [[nodiscard]] QelMessageIterator* rootIterator() override;

    int getTime(long* time) const override;
    int getRequestId(std::string& id) const override;
    [[nodiscard]] std::string getSenderEID() const override;
    int addSubscription(const char* name) override;
    int getSession(std::string& session) const override;
    int getOrigin(std::string& origin) const override;
    [[nodiscard]] const std::vector<std::string>& getSubscriptions() const override;
    void setTime(long time) override;
    void setRequestId(const std::string& id) override;
    void setSenderEID(const std::string& eid) override;
    void setSession(const std::string& session) override;
    void setOrigin(const std::string& origin) override;

    [[nodiscard]] QelMessage* copy(bool withEnvelope) const override;
    int toBinary(std::string& bytes) const override;
    int fromBinary(const char* buf, int len) override;

    /// True if the bytes start with the magic number of the binary form, with which no text form can start.
    [[nodiscard]] static bool looksBinary(std::string_view bytes) noexcept;

    /// The element tree, for the cursor and the codecs. Code that changes it must follow the rules of QelMessageTree.
    [[nodiscard]] QelMessageTree& tree() noexcept { return *m_tree; }
    [[nodiscard]] const QelEnvelope& envelope() const noexcept { return *m_envelope; }

protected:
    ~QelBinary() override;

private:
    int fromText(std::string_view text);
    void replace(QelMessageTree&& tree, QelEnvelope&& envelope);

    std::unique_ptr<QelMessageTree> m_tree;
    std::unique_ptr<QelEnvelope> m_envelope;
};

} // namespace Qel
