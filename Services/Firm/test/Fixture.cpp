#include "Fixture.hpp"

#include <pal/AaSysCom.h>

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>

namespace mox::firm {

using testkit::Message;
using testkit::Messages;

namespace {
constexpr std::uint32_t ticket = 0xC0FFEE01;
}

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    return out << "state " << static_cast<std::uint32_t>(answer.state) << ", result " << answer.result
               << (answer.forced != 0 ? ", forced" : "") << ", path '" << answer.path << "'";
}

testing::Matcher<Answer> answers(State state, std::int32_t result, const std::string& path) {
    return testing::AllOf(testing::Field("state", &Answer::state, state),
                          testing::Field("result", &Answer::result, result),
                          testing::Field("path", &Answer::path, path));
}

std::uint32_t FirmTest::serviceOn(std::uint16_t node) {
    return AaSysComSicadGet(cpid, node);
}

firmwaretest::FirmwareImage FirmTest::image(const std::string& version) {
    return firmwaretest::FirmwareImage().payload(flashed).version(version).listing({0x00500000});
}

std::string FirmTest::put(const firmwaretest::FirmwareImage& image, const std::string& name) {
    std::string path = std::string(imageDirectory) + "/" + name;
    image.writeTo(path);
    return path;
}

Answer FirmTest::check(Component component, std::uint32_t flags) {
    Messages client;
    const Request request{ticket, component, flags};
    auto answer = recordOf<Answer>(client.request(service(), checkRequest, bytesOf(request), checkResponse, limitMs));
    EXPECT_EQ(answer.ticket, ticket);
    EXPECT_EQ(answer.component, component);
    return answer;
}

UpdateRun FirmTest::update(Component component, std::uint32_t flags) {
    Messages client;
    client.send(service(), updateRequest, bytesOf(Request{ticket, component, flags}));
    UpdateRun run = awaitUpdate(client, ticket);
    EXPECT_EQ(run.answer.component, component);
    return run;
}

UpdateRun FirmTest::awaitUpdate(Messages& client, std::uint32_t ticketOfUpdate) {
    UpdateRun run;
    do {
        const Message message = client.await(progressIndication, limitMs);
        if (!message) {
            return run;
        }
        const auto progress = recordOf<Progress>(message);
        EXPECT_EQ(progress.ticket, ticketOfUpdate);
        run.steps.push_back(progress.step);
    } while (run.steps.back() != Step::done);
    run.answer = recordOf<Answer>(client.await(updateResponse, limitMs));
    EXPECT_EQ(run.answer.ticket, ticketOfUpdate);
    client.expectNone(0);
    return run;
}

std::map<std::string, std::string> FirmTest::areas() {
    std::ostringstream directory;
    directory << runPath() << "/nodes/" << std::hex << std::setfill('0') << std::setw(4) << node() << "/flash";
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(directory.str())) {
        if (entry.path().extension() == ".bin") {
            found[entry.path().stem()] = contentOf(entry.path()).value_or("");
        }
    }
    return found;
}

std::optional<std::string> FirmTest::area(const std::string& name) {
    const auto all = areas();
    const auto found = all.find(name);
    return found == all.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> FirmTest::contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void FirmTest::writeFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    EXPECT_TRUE(file) << path;
}

} // namespace mox::firm
