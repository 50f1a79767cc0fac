#include "QelMessage/QelBinary.h"

namespace Qel {

namespace {

class BinaryFactory : public QelMsgFactory {
public:
    [[nodiscard]] QelMessage* createNew() override { return new QelBinary; }
    [[nodiscard]] QelMessage* createNew(const char* buf, int len) override {
        auto_destroy<QelBinary> message(new QelBinary);
        return message->fromBinary(buf, len) == 0 ? message.release() : nullptr;
    }
};

} // namespace

boost::intrusive_ptr<QelMsgFactory> QelMessage::getFactory() {
    static const boost::intrusive_ptr<QelMsgFactory> factory(new BinaryFactory);
    return factory;
}

} // namespace Qel
