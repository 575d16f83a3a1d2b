#pragma once
// Requests to another program by the name of its message port. A request is a number and bytes, its reply is bytes. A
// name is the user's: programs of other users neither see nor serve it. A server that ends, however it ends, leaves no
// name behind.

#include <cstddef>
#include <cstdint>
#include <functional>

#include "support/values.h"

namespace vornaset {

/// Bytes of the data of a request or a reply: what is longer isn't sent, and counts as no reply.
inline constexpr size_t kLargestPortMessage = size_t{1} << 30;

/// Answers a request; null for no reply. It gets bytes that aren't null. What it throws is logged, and there is no
/// reply.
using PortHandler = std::function<Data(int32_t messageID, const Data& data)>;

/// Serves the name on the calling thread's run loop, for the rest of the process. Stops without a message when the name
/// is null or empty, is served already or can't be made. The third argument is taken and ignored.
void setupMessagePort(const String& name, PortHandler handler, void* context);

/// The bytes (null counts as none) to the port of that name, and its reply. Null when nobody serves the name, at once;
/// when the handler has no reply; when the server ends before it has replied; and when sending or the reply takes
/// longer than 1000 seconds each. While it waits the calling thread's run loop is served, so that a program may ask
/// itself.
Data dataWithPortRequest(const String& portName, int32_t messageID, const Data& data);
/// The same with UTF-8 text. The reply goes through stringWithData: the empty string when there is none.
String stringWithPortRequest(const String& portName, int32_t messageID, const String& text);
/// The same with XML property lists. Null, and nothing is sent, when the dictionary can't be written as one; null when
/// there is no reply and when the reply is no property list, else the reply, whatever its type.
Value dictWithPortRequest(const String& portName, int32_t messageID, const Dictionary& dictionary);

/// How long a request may take, in seconds.
struct PortTimeOuts {
    double send = 1000;
    double receive = 1000;
};
Data dataWithPortRequest(const String& portName, int32_t messageID, const Data& data, const PortTimeOuts& timeOuts);

}  // namespace vornaset
