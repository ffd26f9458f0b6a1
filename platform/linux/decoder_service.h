/// What zelvo-avi-decoder does: answers requests on one descriptor, one after the other, until the other side goes.
#pragma once

namespace zelvo::platform::linux_ {

/// Says hello and serves. \param isConfined what the hello says of it
/// \return when the other side closed, or sent what is no request
void serveDecoding(int socket, bool isConfined);

}  // namespace zelvo::platform::linux_
