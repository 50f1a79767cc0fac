#include "QelMessage/QelBinary.h"
#include "QelMessage/QelParseGuard.h"

namespace Qel {

namespace {

class BinaryFactory : public QelMsgFactory {
public:
    [[nodiscard]] QelMessage* createNew() override { return new QelBinary; }
    [[nodiscard]] QelMessage* createNew(const char* buf, int len) override {
        QelMessage* parsed = nullptr;
        const int result = guardParse([&] {
            auto_destroy<QelBinary> message(new QelBinary);
            const int read = message->fromBinary(buf, len);
            if (read == 0)
                parsed = message.release();
            return read;
        });
        return result == 0 ? parsed : nullptr;
    }
};

} // namespace

boost::intrusive_ptr<QelMsgFactory> QelMessage::getFactory() {
    static const boost::intrusive_ptr<QelMsgFactory> factory(new BinaryFactory);
    return factory;
}

} // namespace Qel
