// Sockets in Linux's abstract namespace: such a name lives exactly as long as its server, so no crash leaves one behind
// and no file has to be cleaned up. The platform library's local servers make files, which a crash leaves, and wait in
// its own event loop.
//
// A connection carries one request and one reply. Numbers are in the machine's byte order.
//   request   "VNQ1", message number (4 bytes), length of the name (4), length of the data (8), name, data
//   reply     "VNR1", 1 for a reply or 0 for none (4 bytes), length of the data (8), data

#include "support/message_ports.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include "support/file_handle.h"
#include "support/log.h"
#include "support/property_list.h"
#include "support/run_loop.h"
#include "support/text_decoding.h"

namespace vornaset {

namespace {

constexpr std::string_view kRequestMark = "VNQ1";
constexpr std::string_view kReplyMark = "VNR1";
constexpr size_t kRequestHeader = 20;
constexpr size_t kReplyHeader = 16;

template <class T>
void append(std::string& bytes, T number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

template <class T>
T numberAt(std::string_view bytes, size_t at) {
    T number;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

struct Address {
    sockaddr_un name{};
    socklen_t length = 0;
    const sockaddr* pointer() const { return reinterpret_cast<const sockaddr*>(&name); }
};

/// FNV-1a. Two long names with one number would share one address: the request carries the name, so the wrong server
/// doesn't answer.
uint64_t numberOf(std::string_view text) {
    uint64_t number = 14695981039346656037U;
    for (const char byte : text) number = (number ^ static_cast<uint8_t>(byte)) * 1099511628211U;
    return number;
}

/// Names that are too long for the system stand there by a number.
Address addressOf(const std::string& portName) {
    Address address;
    const std::string user = "vornaset-port/" + std::to_string(geteuid()) + "/";
    std::string text = user + "=" + portName;
    if (text.size() + 1 > sizeof address.name.sun_path) text = user + "#" + std::to_string(numberOf(portName));
    address.name.sun_family = AF_UNIX;
    text.copy(address.name.sun_path + 1, text.size());
    address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    return address;
}

FileHandle makeSocket() {
    return FileHandle(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

/// The abstract namespace knows no permissions, so each side asks who the other is.
bool isOurUser(const FileHandle& socket) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == geteuid();
}

enum class Progress { waiting, done, failed };

bool wouldBlock() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

/// One side's message on its way out.
class Outgoing {
  public:
    Outgoing() = default;
    explicit Outgoing(std::string bytes) : bytes_(std::move(bytes)) {}

    Progress write(const FileHandle& socket) {
        while (at_ < bytes_.size()) {
            const ssize_t count = send(socket.number(), bytes_.data() + at_, bytes_.size() - at_, MSG_NOSIGNAL);
            if (count < 0) return wouldBlock() ? Progress::waiting : Progress::failed;
            at_ += static_cast<size_t>(count);
        }
        return Progress::done;
    }

  private:
    std::string bytes_;
    size_t at_ = 0;
};

/// One side's message on its way in: a header that says how much follows.
class Incoming {
  public:
    Incoming(std::string_view mark, size_t headerLength) : mark_(mark), headerLength_(headerLength) {}

    Progress read(const FileHandle& socket) {
        while (const size_t missing = missingBytes()) {
            if (missing == kDamaged) return Progress::failed;
            char block[65536];
            const ssize_t count = recv(socket.number(), block, std::min(missing, sizeof block), 0);
            if (count == 0) return Progress::failed;
            if (count < 0) return wouldBlock() ? Progress::waiting : Progress::failed;
            bytes_.append(block, static_cast<size_t>(count));
        }
        return Progress::done;
    }

    std::string_view bytes() const { return bytes_; }

  private:
    static constexpr size_t kDamaged = SIZE_MAX;

    /// The header first. Its last eight bytes are the data's length; a request has the name's length before them.
    size_t missingBytes() const {
        if (bytes_.size() < headerLength_) return headerLength_ - bytes_.size();
        if (!std::string_view(bytes_).starts_with(mark_)) return kDamaged;
        const uint64_t nameLength = headerLength_ == kRequestHeader ? numberAt<uint32_t>(bytes_, 8) : 0;
        const auto dataLength = numberAt<uint64_t>(bytes_, headerLength_ - 8);
        if (nameLength > kLargestPortMessage || dataLength > kLargestPortMessage) return kDamaged;
        return headerLength_ + nameLength + dataLength - bytes_.size();
    }

    std::string bytes_;
    std::string_view mark_;
    size_t headerLength_;
};

struct Port {
    std::string name;
    PortHandler handler;
};

/// portRequestHandler: what the handler gives for a request that is whole.
std::string portRequestHandler(const Port& port, std::string_view request) {
    const auto nameLength = numberAt<uint32_t>(request, 8);
    Data reply;
    if (port.handler && request.substr(kRequestHeader, nameLength) == port.name) {
        try {
            const std::string_view data = request.substr(kRequestHeader + nameLength);
            reply = port.handler(numberAt<int32_t>(request, 4), Data(std::string(data)));
        } catch (const std::exception& failure) {
            MyLog("%s: %s", port.name, failure.what());
        } catch (...) {
            MyLog("%s: a failure without a name", port.name);
        }
    }
    if (reply.length() > kLargestPortMessage) reply = nullptr;
    std::string bytes(kReplyMark);
    append<uint32_t>(bytes, reply.isNull() ? 0 : 1);
    append<uint64_t>(bytes, reply.length());
    return bytes.append(reply.view());
}

/// One request on the server's side.
class PortConnection : public RunLoopSource, public std::enable_shared_from_this<PortConnection> {
  public:
    PortConnection(std::shared_ptr<const Port> port, FileHandle socket)
        : port_(std::move(port)), socket_(std::move(socket)) {}

    void start() { RunLoop::current().add(socket_.number(), Wait::forInput, shared_from_this()); }

    void serve() override {
        const Progress progress = isReplying_ ? reply_.write(socket_) : request_.read(socket_);
        if (progress == Progress::waiting) return;
        // Not watched while the handler runs, which may turn the loop, nor afterwards.
        RunLoop::current().remove(socket_.number());
        if (isReplying_ || progress == Progress::failed) return;
        isReplying_ = true;
        reply_ = Outgoing(portRequestHandler(*port_, request_.bytes()));
        if (reply_.write(socket_) == Progress::waiting) {
            RunLoop::current().add(socket_.number(), Wait::forOutput, shared_from_this());
        }
    }

  private:
    std::shared_ptr<const Port> port_;
    FileHandle socket_;
    Incoming request_{kRequestMark, kRequestHeader};
    Outgoing reply_;
    bool isReplying_ = false;
};

class PortListener : public RunLoopSource {
  public:
    PortListener(Port port, FileHandle socket)
        : port_(std::make_shared<const Port>(std::move(port))), socket_(std::move(socket)) {}

    void serve() override {
        FileHandle peer(accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!peer.isOpen()) {
            // Out of files: the request stays in the queue, and the loop must not spin on it.
            if (!wouldBlock()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return;
        }
        if (isOurUser(peer)) std::make_shared<PortConnection>(port_, std::move(peer))->start();
    }

  private:
    std::shared_ptr<const Port> port_;
    FileHandle socket_;
};

/// The requester's side.
class PortRequest : public RunLoopSource {
  public:
    PortRequest(FileHandle socket, std::string request) : socket_(std::move(socket)), request_(std::move(request)) {}

    /// Null for everything but a reply.
    static Data send(const std::shared_ptr<PortRequest>& request, const PortTimeOuts& timeOuts) {
        request->waitFor(request, Wait::forOutput, timeOuts.send);
        if (request->progress_ != Progress::done) return {};
        request->isSent_ = true;
        request->waitFor(request, Wait::forInput, timeOuts.receive);
        return request->progress_ == Progress::done ? request->data() : Data();
    }

    void serve() override {
        progress_ = isSent_ ? reply_.read(socket_) : request_.write(socket_);
        // Others may go on turning the loop before the request's own turn comes.
        if (progress_ != Progress::waiting) RunLoop::current().remove(socket_.number());
    }

  private:
    void waitFor(const std::shared_ptr<PortRequest>& self, Wait wait, double seconds) {
        RunLoop& loop = RunLoop::current();
        progress_ = Progress::waiting;
        loop.add(socket_.number(), wait, self);
        loop.runUntil([this] { return progress_ != Progress::waiting; }, seconds);
        loop.remove(socket_.number());
    }

    Data data() const {
        if (numberAt<uint32_t>(reply_.bytes(), 4) != 1) return {};
        return Data(std::string(reply_.bytes().substr(kReplyHeader)));
    }

    FileHandle socket_;
    Outgoing request_;
    Incoming reply_{kReplyMark, kReplyHeader};
    Progress progress_ = Progress::waiting;
    bool isSent_ = false;
};

/// Not open when nobody serves the name. A server whose queue is full is waited for.
FileHandle connectTo(const std::string& portName, double seconds) {
    const Address address = addressOf(portName);
    FileHandle socket = makeSocket();
    if (!socket.isOpen()) return {};
    const auto isSettled = [&] {
        if (connect(socket.number(), address.pointer(), address.length) == 0) return true;
        if (wouldBlock()) return false;
        socket.close();
        return true;
    };
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!isSettled()) {
        if (std::chrono::steady_clock::now() > end) return {};
        RunLoop::current().runFor(0.001);
    }
    return socket.isOpen() && isOurUser(socket) ? std::move(socket) : FileHandle();
}

}  // namespace

void setupMessagePort(const String& name, PortHandler handler, void* /*context*/) {
    FileHandle socket = makeSocket();
    if (name.isEmpty() || !socket.isOpen()) return;
    Port port{name.utf8(), std::move(handler)};
    const Address address = addressOf(port.name);
    if (bind(socket.number(), address.pointer(), address.length) != 0) return;
    if (listen(socket.number(), SOMAXCONN) != 0) return;
    const int file = socket.number();
    RunLoop::current().add(file, Wait::forInput, std::make_shared<PortListener>(std::move(port), std::move(socket)));
}

Data dataWithPortRequest(const String& portName, int32_t messageID, const Data& data, const PortTimeOuts& timeOuts) {
    if (portName.isEmpty() || data.length() > kLargestPortMessage) return {};
    const std::string name = portName.utf8();
    FileHandle socket = connectTo(name, timeOuts.send);
    if (!socket.isOpen()) return {};
    std::string request(kRequestMark);
    append(request, messageID);
    append(request, static_cast<uint32_t>(name.size()));
    append<uint64_t>(request, data.length());
    request.append(name).append(data.view());
    return PortRequest::send(std::make_shared<PortRequest>(std::move(socket), std::move(request)), timeOuts);
}

Data dataWithPortRequest(const String& portName, int32_t messageID, const Data& data) {
    return dataWithPortRequest(portName, messageID, data, PortTimeOuts{});
}

String stringWithPortRequest(const String& portName, int32_t messageID, const String& text) {
    return stringWithData(dataWithPortRequest(portName, messageID, dataWithString(text)));
}

Value dictWithPortRequest(const String& portName, int32_t messageID, const Dictionary& dictionary) {
    const Data data = propertyListData(dictionary);
    if (data.isNull()) return {};
    return propertyListWithData(dataWithPortRequest(portName, messageID, data));
}

}  // namespace vornaset
