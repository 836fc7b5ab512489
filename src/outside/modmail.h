#pragma once

namespace platform {
class Host;
}

// The mail client of the user, as the desktop has it registered for mailto links.
namespace modMail {

// Starts the registered mailto handler with no message, through `host`. True when it was
// started; false when the desktop has no handler or the handler's program would not start.
bool StartMailClient(platform::Host &host);

} // namespace modMail
