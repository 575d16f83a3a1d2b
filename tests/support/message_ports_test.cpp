#include "support/message_ports.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <thread>

#include "other_process.h"
#include "support/file_handle.h"
#include "support/printing.h"
#include "support/property_list.h"
#include "support/run_loop.h"

namespace vornaset {
namespace {

Data bytes(std::string text) {
    return Data(std::move(text));
}

/// No two tests, and no two runs of the tests at once, share a name.
String freshName(const char* end = "") {
    static int number = 0;
    return String::fromUTF8("test." + std::to_string(getpid()) + "." + std::to_string(++number) + end);
}

/// A server in a process of its own that serves the name when the constructor returns.
class Server {
  public:
    Server(const String& name, PortHandler handler) {
        int ends[2];
        if (pipe(ends) != 0) throw std::runtime_error("no pipe");
        process_.emplace([&] {
            setupMessagePort(name, handler, nullptr);
            if (write(ends[1], "x", 1) != 1) return false;
            RunLoop::current().runFor(60);
            return true;
        });
        char ready = 0;
        if (read(ends[0], &ready, 1) != 1) throw std::runtime_error("no server");
        close(ends[0]);
        close(ends[1]);
    }
    void kill() { process_->kill(); }
    pid_t pid() const { return process_->pid(); }

  private:
    std::optional<OtherProcess> process_;
};

/// The reply tells what came.
Data echo(int32_t messageID, const Data& data) {
    return bytes(std::to_string(messageID) + ":" + std::string(data.view()));
}

double secondsOf(const std::function<void()>& step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(MessagePorts, ANameThatNobodyServesGivesNullAtOnce) {
    const String name = freshName();
    const double seconds = secondsOf([&] {
        EXPECT_TRUE(dataWithPortRequest(name, 1, bytes("x")).isNull());
        EXPECT_EQ(stringWithPortRequest(name, 1, "x"), u"");
        EXPECT_TRUE(dictWithPortRequest(name, 1, Dictionary::make()).isNull());
    });
    EXPECT_LT(seconds, 1);
    EXPECT_TRUE(dataWithPortRequest(nullptr, 1, bytes("x")).isNull());
    EXPECT_TRUE(dataWithPortRequest(u"", 1, bytes("x")).isNull());
}

TEST(MessagePorts, AnotherProcessAnswers) {
    const String name = freshName();
    const Server server(name, echo);
    EXPECT_EQ(dataWithPortRequest(name, 7, bytes(std::string("a\0b", 3))).view(), std::string_view("7:a\0b", 5));
    EXPECT_EQ(dataWithPortRequest(name, -2147483647, bytes("")).view(), "-2147483647:");
    EXPECT_EQ(dataWithPortRequest(name, 0, nullptr).view(), "0:");
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(dataWithPortRequest(name, round, bytes("x")).view(), std::to_string(round) + ":x");
    }
}

TEST(MessagePorts, TextTravelsAsUtf8) {
    const String name = freshName();
    const Server server(name, echo);
    EXPECT_EQ(stringWithPortRequest(name, 1, u"M\u00FCller \U0001F600"), u"1:M\u00FCller \U0001F600");
    EXPECT_EQ(stringWithPortRequest(name, 1, nullptr), u"1:");
}

TEST(MessagePorts, DictionariesTravelAsXmlPropertyLists) {
    const String name = freshName();
    const Server server(name, [](int32_t messageID, const Data& data) {
        if (!data.view().starts_with("<?xml")) return Data();
        const Dictionary request = propertyListWithData(data).dictionary();
        if (messageID == 2) return propertyListData(Array::make({request}));
        if (messageID == 3) return bytes("no property list");
        Dictionary reply = request.mutableCopy();
        reply.setValue("more", u"\u00E4");
        return propertyListData(reply);
    });
    const Dictionary request = Dictionary::make({{"n", 7}, {"a", Array::make({"x"})}});
    EXPECT_EQ(dictWithPortRequest(name, 1, request),
              Value(Dictionary::make({{"n", 7}, {"a", Array::make({"x"})}, {"more", u"\u00E4"}})));
    EXPECT_EQ(dictWithPortRequest(name, 2, request), Value(Array::make({request})));
    EXPECT_TRUE(dictWithPortRequest(name, 3, request).isNull());
}

TEST(MessagePorts, ADictionaryThatCanNotBeWrittenIsNotSent) {
    const String name = freshName();
    int requests = 0;
    setupMessagePort(
        name, [&](int32_t, const Data&) { return ++requests, bytes("x"); }, nullptr);
    EXPECT_TRUE(dictWithPortRequest(name, 1, Dictionary::make({{"k", Value::nothing()}})).isNull());
    EXPECT_TRUE(dictWithPortRequest(name, 1, nullptr).isNull());
    EXPECT_EQ(requests, 0);
}

TEST(MessagePorts, AHandlerWithoutAReplyGivesNull) {
    const String name = freshName();
    const Server server(name, [](int32_t messageID, const Data&) { return messageID == 1 ? bytes("") : Data(); });
    EXPECT_TRUE(dataWithPortRequest(name, 0, bytes("x")).isNull());
    EXPECT_EQ(dataWithPortRequest(name, 1, bytes("x")), bytes(""));
    EXPECT_EQ(stringWithPortRequest(name, 0, "x"), u"");
    EXPECT_TRUE(dictWithPortRequest(name, 0, Dictionary::make()).isNull());
}

TEST(MessagePorts, AHandlerThatRaisesGivesNullAndGoesOnServing) {
    const String name = freshName();
    const Server server(name, [](int32_t messageID, const Data&) -> Data {
        if (messageID == 0) throw exceptionWithReason("no");
        if (messageID == 1) throw 7;
        return bytes("x");
    });
    EXPECT_TRUE(dataWithPortRequest(name, 0, nullptr).isNull());
    EXPECT_TRUE(dataWithPortRequest(name, 1, nullptr).isNull());
    EXPECT_EQ(dataWithPortRequest(name, 2, nullptr).view(), "x");
    const String empty = freshName();
    setupMessagePort(empty, nullptr, nullptr);
    EXPECT_TRUE(dataWithPortRequest(empty, 2, nullptr).isNull());
}

TEST(MessagePorts, TheSecondServerOfANameStopsSilently) {
    const String name = freshName();
    const Server first(name, [](int32_t, const Data&) { return bytes("first"); });
    const Server second(name, [](int32_t, const Data&) { return bytes("second"); });
    setupMessagePort(
        name, [](int32_t, const Data&) { return bytes("third"); }, nullptr);
    for (int round = 0; round < 5; ++round) EXPECT_EQ(dataWithPortRequest(name, 1, nullptr).view(), "first");
}

TEST(MessagePorts, AServerThatDiedLeavesNoNameBehind) {
    const String name = freshName();
    {
        Server first(name, echo);
        EXPECT_FALSE(dataWithPortRequest(name, 1, nullptr).isNull());
        first.kill();
    }
    EXPECT_LT(secondsOf([&] { EXPECT_TRUE(dataWithPortRequest(name, 1, nullptr).isNull()); }), 1);
    const Server second(name, [](int32_t, const Data&) { return bytes("second"); });
    EXPECT_EQ(dataWithPortRequest(name, 1, nullptr).view(), "second");
}

TEST(MessagePorts, AServerThatDiesOverARequestGivesNull) {
    const String name = freshName();
    const Server server(name, [](int32_t, const Data&) -> Data { _exit(3); });
    EXPECT_LT(secondsOf([&] { EXPECT_TRUE(dataWithPortRequest(name, 1, bytes("x")).isNull()); }), 5);
}

TEST(MessagePorts, LargeMessagesTravelWhole) {
    const String name = freshName();
    const Server server(name, [](int32_t, const Data& data) { return bytes(std::string(data.view()) + "!"); });
    std::string large(20000000, 'x');
    for (size_t at = 0; at < large.size(); at += 4096) large[at] = static_cast<char>(at >> 12);
    const Data reply = dataWithPortRequest(name, 1, bytes(large));
    EXPECT_TRUE(reply.view() == large + "!");
}

TEST(MessagePorts, AProcessMayAskItself) {
    const String name = freshName();
    int context = 0;
    setupMessagePort(name, echo, &context);
    EXPECT_EQ(dataWithPortRequest(name, 3, bytes("x")).view(), "3:x");
    const std::string large(5000000, 'y');
    EXPECT_EQ(dataWithPortRequest(name, 3, bytes(large)).length(), large.size() + 2);
}

TEST(MessagePorts, AHandlerMayAskAnotherPort) {
    const String inner = freshName();
    const String outer = freshName();
    const Server innerServer(inner, echo);
    setupMessagePort(
        outer, [&](int32_t messageID, const Data& data) { return dataWithPortRequest(inner, messageID + 1, data); },
        nullptr);
    EXPECT_EQ(dataWithPortRequest(outer, 3, bytes("x")).view(), "4:x");
}

TEST(MessagePorts, TimersFireWhileARequestWaits) {
    const String name = freshName();
    const Server server(name, [](int32_t, const Data&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return bytes("late");
    });
    int fired = 0;
    const TimerRef timer = startTimer(0.01, [&](const TimerRef&) { ++fired; });
    EXPECT_EQ(dataWithPortRequest(name, 1, nullptr).view(), "late");
    stopTimer(timer);
    EXPECT_GE(fired, 2);
}

TEST(MessagePorts, AServerThatDoesNotReplyInTimeGivesNull) {
    const String name = freshName();
    const Server server(name, [](int32_t, const Data&) {
        std::this_thread::sleep_for(std::chrono::seconds(30));
        return bytes("late");
    });
    PortTimeOuts standard;
    EXPECT_EQ(standard.send, 1000);
    EXPECT_EQ(standard.receive, 1000);
    const double seconds = secondsOf([&] { EXPECT_TRUE(dataWithPortRequest(name, 1, nullptr, {5, 0.1}).isNull()); });
    EXPECT_GE(seconds, 0.1);
    EXPECT_LT(seconds, 4);
}

TEST(MessagePorts, AServerThatTakesNothingInTimeGivesNull) {
    const String name = freshName();
    const Server server(name, echo);
    ASSERT_EQ(kill(server.pid(), SIGSTOP), 0);
    const double seconds = secondsOf([&] {
        EXPECT_TRUE(dataWithPortRequest(name, 1, bytes(std::string(20000000, 'x')), {0.1, 0.1}).isNull());
    });
    EXPECT_LT(seconds, 4);
}

TEST(MessagePorts, SeveralRequestersAreServedAtOnce) {
    const String name = freshName();
    const Server server(name, echo);
    std::vector<std::unique_ptr<OtherProcess>> requesters;
    for (int number = 0; number < 8; ++number) {
        requesters.push_back(std::make_unique<OtherProcess>([&] {
            for (int round = 0; round < 50; ++round) {
                const std::string data(static_cast<size_t>(number) * 10000, 'x');
                if (dataWithPortRequest(name, number, bytes(data)).view() != std::to_string(number) + ":" + data)
                    return false;
            }
            return true;
        }));
    }
    for (const auto& requester : requesters) EXPECT_EQ(requester->wait(), 0);
}

TEST(MessagePorts, NamesMayBeLongOrHoldAnything) {
    for (const String& name : {freshName(std::string(5000, 'n').c_str()), freshName("/../ \xC3\xA4\xF0\x9F\x98\x80"),
                               freshName() + String(std::u16string_view(u"\0x", 2))}) {
        const Server server(name, echo);
        EXPECT_EQ(dataWithPortRequest(name, 1, bytes("x")).view(), "1:x");
        EXPECT_TRUE(dataWithPortRequest(name + "n", 1, bytes("x")).isNull());
    }
}

TEST(MessagePorts, NamesThatCanNotBeServedStopSilently) {
    setupMessagePort(nullptr, echo, nullptr);
    setupMessagePort(u"", echo, nullptr);
    EXPECT_TRUE(dataWithPortRequest(u"", 1, nullptr).isNull());
}

/// Says to a port what no requester says, and gives what comes back before it hangs up.
std::string rawExchange(const String& name, const std::string& request) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string text = "vornaset-port/" + std::to_string(geteuid()) + "/=" + name.utf8();
    text.copy(address.sun_path + 1, text.size());
    const FileHandle file(socket(AF_UNIX, SOCK_STREAM, 0));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    if (connect(file.number(), reinterpret_cast<sockaddr*>(&address), length) != 0) return "no connection";
    if (send(file.number(), request.data(), request.size(), MSG_NOSIGNAL) < 0) return "no request";
    shutdown(file.number(), SHUT_WR);
    char reply[100];
    const ssize_t count = recv(file.number(), reply, sizeof reply, 0);
    return count <= 0 ? "" : std::string(reply, static_cast<size_t>(count));
}

TEST(MessagePorts, DamagedRequestsAreDroppedAndTheNextIsServed) {
    const String name = freshName();
    const Server server(name, echo);
    const std::string tooLong = "VNQ1" + std::string(4, '\0') + std::string(12, '\xFF');
    const std::string otherName =
        std::string("VNQ1") + std::string(4, '\0') + std::string("\2\0\0\0", 4) + std::string(8, '\0') + "xx";
    EXPECT_EQ(rawExchange(name, ""), "");
    EXPECT_EQ(rawExchange(name, "VNQ1half"), "");
    EXPECT_EQ(rawExchange(name, "GET / HTTP/1.0\r\n\r\n"), "");
    EXPECT_EQ(rawExchange(name, tooLong), "");
    EXPECT_EQ(rawExchange(name, otherName), "VNR1" + std::string(12, '\0'));
    EXPECT_EQ(dataWithPortRequest(name, 1, bytes("x")).view(), "1:x");
}

}  // namespace
}  // namespace vornaset
