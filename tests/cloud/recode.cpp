// Reads lines "TYPE HEX" and answers each with the message encoded anew, in HEX, or with "error: TEXT".
// recode --types prints the names of all types instead.
#include "host/cloudwire/codec.h"

#include <iostream>

namespace {

std::string fromHex(const std::string& hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

std::string toHex(std::string_view bytes)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const unsigned char byte : bytes)
        hex.append({ digits[byte >> 4], digits[byte & 15] });
    return hex;
}

} // namespace

int main(int argc, char**)
{
    if (argc > 1) {
        for (const cloudwire::MessageType& type : cloudwire::messageTypes())
            std::cout << type.name << '\n';
        return 0;
    }
    cloudwire::MessageCodec codec(1 << 20);
    std::string line;
    while (std::getline(std::cin, line)) {
        const std::size_t space = line.find(' ');
        const cloudwire::MessageType* type =
            cloudwire::findMessageType(std::string_view(line).substr(0, space));
        if (!type)
            return 1;
        // A block of its own size, so that the sanitizers see a read beyond it.
        const std::string hex = line.substr(space + 1);
        const std::string bytes = fromHex(hex);
        const auto block = std::make_unique<char[]>(bytes.size());
        bytes.copy(block.get(), bytes.size());
        const std::shared_ptr<void> message = type->make();
        const auto fault = codec.decode(*type, { block.get(), bytes.size() }, message.get());
        std::cout << (fault ? "error: " + *fault : toHex(codec.encode(*type, message.get()))) << '\n';
    }
}
