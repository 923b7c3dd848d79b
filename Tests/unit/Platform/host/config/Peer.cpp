// A process of a run that does with the configuration what its standard input says, a command a line. Each command is
// answered with one line; call-backs write lines that begin with "told".
#include <pal/AaConfig.h>
#include <pal/AaMem.h>
#include <pal/AaStartup.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>
#include <string>

namespace {

std::mutex g_output;

void say(const std::string& line) {
    const std::lock_guard lock(g_output);
    std::cout << line << std::endl;
}

void told(const char* tag, const void* value, unsigned int length) {
    say(std::string("told ") + tag + " " + std::string(static_cast<const char*>(value), length));
}

void fillDomain() {
    AaConfigRadSetMaxTagCount(2, 0x20106);
    AaConfigRadSetDefault(0x20006, "RESET", 3);
    AaConfigRadSetDefault(0x20038, "EAC", 0);
    AaConfigRadSetDefault(0x200B0, "EAC", 0);
}

unsigned int numberIn(std::istream& in) {
    std::string text;
    in >> text;
    return static_cast<unsigned int>(std::strtoul(text.c_str(), nullptr, 0));
}

std::string wordIn(std::istream& in) {
    std::string text;
    in >> text;
    return text;
}

std::string start(std::istream&) {
    const int early = AaConfigEarlyStartup();
    return std::to_string(early) + " " + std::to_string(early == 0 ? AaStartupEeStartup() : -1);
}

std::string publish(std::istream& in) {
    const std::string tag = wordIn(in);
    const std::string value = wordIn(in);
    return std::to_string(AaConfigTagPublicSet(tag.c_str(), value.data(), static_cast<unsigned int>(value.size())));
}

std::string flood(std::istream& in) {
    const std::string tag = wordIn(in);
    const unsigned int count = numberIn(in);
    int failed = 0;
    for (unsigned int i = 0; i < count; ++i) {
        const std::string value = std::to_string(i);
        failed += AaConfigTagPublicSet(tag.c_str(), value.data(), static_cast<unsigned int>(value.size())) != 0 ? 1 : 0;
    }
    return std::to_string(failed);
}

std::string get(std::istream& in) {
    void* data = nullptr;
    unsigned int size = 0;
    const int result = AaConfigTagGet(wordIn(in).c_str(), &data, &size);
    const std::string value = result == 0 ? std::string(static_cast<char*>(data), size) : "none";
    AaMemUnRef(data);
    return value;
}

std::string subscribe(std::istream& in) {
    const std::string service = wordIn(in);
    return std::to_string(
        AaConfigSubscribeService(service.c_str(), static_cast<EAaConfigSvcRegScope>(numberIn(in)), told));
}

std::string radSet(std::istream& in) {
    const unsigned int id = numberIn(in);
    return std::to_string(AaConfigRadSetValue(id, numberIn(in)));
}

const std::map<std::string, std::function<std::string(std::istream&)>> commands{
    {"start", start},
    {"early", [](std::istream&) { return std::to_string(AaConfigEarlyStartup()); }},
    {"end", [](std::istream&) { return std::to_string(AaStartupEeShutdown()); }},
    {"publish", publish},
    {"flood", flood},
    {"get", get},
    {"own",
     [](std::istream& in) {
         const std::string tag = wordIn(in);
         return std::to_string(AaConfigTagSetString(tag.c_str(), wordIn(in).c_str()));
     }},
    {"register", [](std::istream& in) { return std::to_string(AaConfigTagRegister(wordIn(in).c_str(), told)); }},
    {"unregister", [](std::istream& in) { return std::to_string(AaConfigTagUnregister(wordIn(in).c_str(), told)); }},
    {"subscribe", subscribe},
    {"domain", [](std::istream&) { return std::to_string(AaConfigRadRegisterDomain(2, "HWA", fillDomain)); }},
    {"radget", [](std::istream& in) { return std::to_string(AaConfigRadGetValue(numberIn(in))); }},
    {"radset", radSet},
};

} // namespace

int main() {
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream in(line);
        const auto command = commands.find(wordIn(in));
        say(command != commands.end() ? command->second(in) : "unknown command: " + line);
    }
    return 0;
}
