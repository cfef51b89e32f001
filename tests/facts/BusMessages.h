#pragma once

// What the bus says of a call that brings no answer. %1 stands for the peer.
inline constexpr const char* NO_OWNER = "The name com.kestrelix.ozna.%1manager was not provided by any .service files";
inline constexpr const char* GONE_IN_THE_CALL = "Message recipient disconnected from message bus without replying";
inline constexpr const char* NO_REPLY =
    "Did not receive a reply. Possible causes include: the remote application did not send a reply, the message bus "
    "security policy blocked the reply, the reply timeout expired, or the network connection was broken.";
