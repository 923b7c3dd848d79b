#include "CommandLine.hpp"
#include "Deadline.hpp"
#include "Failure.hpp"
#include "FileText.hpp"
#include "Interruption.hpp"
#include "Message.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <pal/AaSysCom.h>

#include <host/pal/TypedValue.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>

namespace mox::tools {

namespace {

/// A waiting receive is cut into slices, so that a signal is noticed.
constexpr int sliceMs = 100;

struct MsgOptions {
    std::string receiver;
    std::string id;
    std::string hex;
    std::string text;
    std::string file;
    std::string sender;
    std::string cpid;
    std::string answer;
    std::optional<double> seconds;
    unsigned count = 0;
};

constexpr std::size_t mostPayload = AASYSCOM_MAX_PAYLOAD;

std::string readFile(const std::string& name) {
    std::string bytes;
    const bool isRead =
        name == "-" ? readFileText(STDIN_FILENO, bytes, mostPayload + 1) : readFileText(name, bytes, mostPayload + 1);
    if (!isRead) {
        throw Failure(ExitStatus::usage, "payload: " + name + ": " + std::strerror(errno));
    }
    return bytes;
}

std::string readHex(const std::string& text) {
    const auto value = host::parseValue(host::ValueType::bytes, text);
    if (!value) {
        throw Failure(ExitStatus::usage, std::string("payload: expected ") +
                                             host::expectedText(host::ValueType::bytes) + ", got '" + text + "'");
    }
    return value->bytes;
}

/// The command line takes at most one of the three.
std::string payloadOf(const MsgOptions& options) {
    std::string bytes = !options.hex.empty()    ? readHex(options.hex)
                        : !options.file.empty() ? readFile(options.file)
                                                : options.text;
    if (bytes.size() > mostPayload) {
        throw Failure(ExitStatus::usage,
                      "payload: expected at most " + std::to_string(mostPayload) + " bytes, got more");
    }
    return bytes;
}

/// What send and request send, read from the command line once.
class Outgoing {
public:
    Outgoing(Session& session, const MsgOptions& options)
        : m_id(readId(options.id, "message id")),
          m_payload(payloadOf(options)),
          m_receiver(readAddress(session, options.receiver)) {}

    std::uint32_t receiver() const { return m_receiver; }

    void* make() const {
        void* message = AaSysComMsgCreate(m_id, static_cast<std::uint32_t>(m_payload.size()), m_receiver);
        if (message == nullptr) {
            throw Failure(ExitStatus::failed, "no memory for the message");
        }
        if (!m_payload.empty()) {
            std::memcpy(AaSysComMsgGetPayload(message), m_payload.data(), m_payload.size());
        }
        return message;
    }

private:
    std::uint16_t m_id;
    std::string m_payload;
    std::uint32_t m_receiver;
};

/// The next message for this thread; none when the time is up. Throws Failure when interrupted.
OwnedMessage receive(const Deadline& deadline) {
    for (;;) {
        constexpr int microseconds = 1000;
        OwnedMessage message(AaSysComMsgReceive(deadline.leftMs(sliceMs) * microseconds, 0));
        interruption::check();
        if (message || deadline.passed()) {
            return message;
        }
    }
}

void send(Session& session, const MsgOptions& options) {
    session.startPlatform();
    const Outgoing outgoing(session, options);
    const std::uint32_t sender = options.sender.empty() ? 0 : readAddress(session, options.sender);
    for (unsigned i = 0; i < options.count; ++i) {
        interruption::check();
        checkSent(AaSysComMsgSendS(outgoing.make(), sender), outgoing.receiver());
    }
    session.output().object({{"sent", options.count}, {"receiver", showHex(outgoing.receiver(), 8)}});
    session.output().detail("sent " + std::to_string(options.count) + " to " + showAddress(outgoing.receiver()));
}

constexpr std::uint32_t anyId = 0x10000; // no message has it

/// One request with its answer. Messages before the answer, such as progress, are printed too.
/// @param wanted  the answer's id, or anyId
void requestOnce(const Output& output, const Outgoing& outgoing, std::uint32_t wanted, double seconds) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const Deadline deadline(seconds);
    checkSent(AaSysComMsgSend(outgoing.make()), outgoing.receiver());
    for (bool isAnswered = false; !isAnswered;) {
        const OwnedMessage message = receive(deadline);
        const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin).count();
        if (!message) {
            throw Failure(ExitStatus::timeLimit,
                          "time limit reached: no answer from " + showAddress(outgoing.receiver()));
        }
        isAnswered = wanted == anyId || wanted == AaSysComMsgGetId(message.handle());
        Json json = jsonOf(message);
        json["microseconds"] = took;
        output.object(json);
        output.line(textOf(message));
        output.detail("received after " + std::to_string(took) + " us");
    }
}

void request(Session& session, const MsgOptions& options) {
    const std::uint32_t wanted = options.answer.empty() ? anyId : readId(options.answer, "answer's id");
    session.startPlatform();
    const Outgoing outgoing(session, options);
    if (AaSysComEuUserRegister(0) == 0) {
        throw Failure(ExitStatus::failed, "no address is left on node " + host::hex4(session.run().node()));
    }
    for (unsigned i = 0; i < options.count; ++i) {
        requestOnce(session.output(), outgoing, wanted, *options.seconds);
    }
}

/// Registers the CPID that is to be watched. @return the registered one
std::uint16_t registerEndpoint(const host::Run& run, std::uint16_t cpid) {
    if (cpid >= AASYSCOM_FIRST_DYNAMIC_CPID) {
        throw Failure(ExitStatus::usage, "CPID: expected 1 to 0x7FFF, or 0 for any free one, got " + showHex(cpid, 4));
    }
    const std::uint16_t registered = AaSysComEuUserRegister(cpid);
    if (registered != 0) {
        return registered;
    }
    for (const RegisteredEndpoint& endpoint : endpointsOf(run, run.node())) {
        const auto owner = endpoint.cpid == cpid ? readProcess(endpoint.pid) : std::nullopt;
        if (owner) {
            throw Failure(ExitStatus::failed, "CPID " + showHex(cpid, 4) + " is taken by process " +
                                                  std::to_string(owner->pid) + " (" + owner->name + ")");
        }
    }
    throw Failure(ExitStatus::failed, "CPID " + showHex(cpid, 4) + " cannot be registered");
}

void monitor(Session& session, const MsgOptions& options) {
    const std::uint16_t wanted = readId(options.cpid, "CPID");
    session.startPlatform();
    const host::Run& run = session.run();
    const std::uint16_t cpid = registerEndpoint(run, wanted);
    session.output().note("monitoring " + showAddress(AaSysComSicadGet(cpid, run.node())));
    const Deadline deadline(options.seconds);
    for (unsigned seen = 0; options.count == 0 || seen < options.count; ++seen) {
        const OwnedMessage message = receive(deadline);
        if (!message && options.count == 0) {
            return;
        }
        if (!message) {
            throw Failure(ExitStatus::timeLimit, "time limit reached after " + std::to_string(seen) + " of " +
                                                     std::to_string(options.count) + " messages");
        }
        session.output().object(jsonOf(message));
        session.output().line(textOf(message));
    }
}

using Shared = std::shared_ptr<MsgOptions>;

void addMessage(CLI::App& verb, const Shared& options) {
    addArgument(verb, "TO", options->receiver, "nid:cpid (1011:0600), a number (0x10110600), or a service of the node")
        .required();
    addArgument(verb, "ID", options->id, "Message id: decimal, or hexadecimal as 0x601 or 0601").required();
    CLI::Option* hex = verb.add_option("--payload,--hex", options->hex, "Payload: pairs of hexadecimal digits");
    CLI::Option* text = verb.add_option("--text", options->text, "Payload: the bytes of a text");
    CLI::Option* file = verb.add_option("--file", options->file, "Payload: a file's bytes (-: standard input)");
    hex->type_name("HEX");
    text->type_name("TEXT")->excludes(hex);
    file->type_name(placeholder::file)->excludes(hex)->excludes(text);
    takesNumber(*verb.add_option("--count", options->count, "How many, one after the other"), 1, UINT32_MAX)
        .default_val(1);
}

void addMonitor(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<MsgOptions>();
    CLI::App& verb = line.addVerb(group, "monitor", "Registers a CPID and prints what arrives there.",
                                  [options](Session& session) { monitor(session, *options); });
    addArgument(verb, "CPID", options->cpid, "Decimal, or hexadecimal as 0x601 or 0601; 0: any free one").required();
    takesNumber(*verb.add_option("--count", options->count, "End after so many"), 1, UINT32_MAX);
    takesSeconds(
        *verb.add_option("--timeout", options->seconds, "End after so long; status 124 when --count is not reached"));
}

} // namespace

void addMsgVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("msg", "Messages to and from services");
    const auto sendOptions = std::make_shared<MsgOptions>();
    CLI::App& sendVerb = line.addVerb(group, "send", "Sends a message.",
                                      [sendOptions](Session& session) { send(session, *sendOptions); });
    addMessage(sendVerb, sendOptions);
    sendVerb.add_option("--from", sendOptions->sender, "The sender's address (default: none)")->type_name("SICAD");
    const auto requestOptions = std::make_shared<MsgOptions>();
    CLI::App& requestVerb = line.addVerb(group, "request", "Sends a message, and prints the answer.",
                                         [requestOptions](Session& session) { request(session, *requestOptions); });
    addMessage(requestVerb, requestOptions);
    requestVerb
        .add_option("--answer", requestOptions->answer,
                    "The answer's message id; what comes before it is printed too (default: the first message)")
        ->type_name("ID");
    takesSeconds(*requestVerb.add_option("--timeout", requestOptions->seconds, "Limit of the wait; then status 124"))
        .default_val(5);
    addMonitor(line, group);
}

} // namespace mox::tools
