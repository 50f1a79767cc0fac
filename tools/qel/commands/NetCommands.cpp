#include <array>
#include <memory>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Network/QelNetDevice.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

/// A device and the type name of its class.
struct FoundDevice {
    std::string type;
    boost::shared_ptr<QelNetDevice> device;
};

using DeviceFactory = QelDerivedParserFactory<QelNetDevice>;

/// Reads the device in the current element; an element without a type is a QelNetDevice.
ExitCode readDevice(const std::string& file, const QelMessageIterator& cursor, FoundDevice& found,
                    const Console& console) {
    const std::string type = cursor.curType();
    if (!type.empty() && !DeviceFactory::factories().contains(type))
        return console.fail(ExitCode::badInput, shownName(file) + ": element " + cursor.curName() + " has type " +
                                                    type + ", which is not a network device");
    found.type = type.empty() ? QelDerivedKey<QelNetDevice::Writer>() : type;
    // A failed read leaves its cursor inside the element; a copy keeps `cursor` in place.
    const std::unique_ptr<QelMessageIterator> at(cursor.newIterator(false));
    if (at->getObject(found.device, QelReaderDerived<QelNetDevice>(true), getEmptyID()) != 0)
        return console.fail(ExitCode::badInput, shownName(file) + ": " + getErrorMessage());
    return ExitCode::success;
}

/// Reads one device from each top-level element of a message.
ExitCode readDevices(const std::string& file, std::vector<FoundDevice>& devices, const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    ExitCode code = readMessage(file, *message, console);
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (code != ExitCode::success || cursor->firstChild() != 0)
        return code;
    do
        code = readDevice(file, *cursor, devices.emplace_back(), console);
    while (code == ExitCode::success && cursor->nextSibling() == 0);
    return code;
}

Json addressesAsJson(const QelNetDevice& device) {
    Json addresses = Json::array();
    for (const QelIPAddress& address : device.ipAddresses)
        addresses.push_back(address.toStringWithNetwork());
    return addresses;
}

Json devicesAsJson(const std::vector<FoundDevice>& devices) {
    Json array = Json::array();
    for (const auto& [type, device] : devices)
        array.push_back({{"id", device->id}, {"type", type}, {"addresses", addressesAsJson(*device)}});
    return array;
}

std::string joinedAddresses(const QelNetDevice& device) {
    std::string string;
    for (const QelIPAddress& address : device.ipAddresses)
        string += (string.empty() ? "" : ", ") + address.toStringWithNetwork();
    return string;
}

void printDevices(std::ostream& out, const std::vector<FoundDevice>& devices) {
    Table table;
    table.addRow({"id", "type", "addresses"});
    for (const auto& [type, device] : devices)
        table.addRow({device->id, type, joinedAddresses(*device)});
    table.print(out);
}

// --- qel net match

ExitCode runMatch(const Invocation& invocation, const Console& console) {
    std::vector<FoundDevice> devices;
    std::vector<FoundDevice> filters;
    const std::string& filterFile = invocation.arguments[1];
    if (const ExitCode code = readDevices(invocation.arguments[0], devices, console); code != ExitCode::success)
        return code;
    if (const ExitCode code = readDevices(filterFile, filters, console); code != ExitCode::success)
        return code;
    if (filters.size() != 1)
        return console.fail(ExitCode::badInput, shownName(filterFile) + ": expected one device as the filter, found " +
                                                    std::to_string(filters.size()));
    std::erase_if(devices,
                  [&](const FoundDevice& found) { return !checkFilter(found.device, filters.front().device); });
    Output(invocation, console)
        .print([&] { return devicesAsJson(devices); }, [&](std::ostream& out) { printDevices(out, devices); });
    return ExitCode::success;
}

} // namespace

CommandGroup netCommands() {
    static constexpr std::array commands{
        Command{"match", "DEVICES FILTER",
                "List the devices in DEVICES that match the device in FILTER; empty fields of FILTER match any value",
                addJsonOption, runMatch},
    };
    return {"net", "Network devices", commands};
}

} // namespace Qel::Tool
