#pragma once

#include "PeerReply.h"

class PeerOwner;
class PhotoManagerProxy;

// The client of the photo manager. Each request waits for its answer.
namespace PhotoManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.photomanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/photomanager/photoobj";
inline constexpr int TIMEOUT_MS = 5000;

inline constexpr const char* ENABLE_CAMERA = "EnableCamera";
inline constexpr const char* TAKE_PHOTO = "TakePhoto";
inline constexpr const char* TAKE_PHOTO_STREAM = "TakePhotoStream";
inline constexpr const char* STOP_PHOTO_STREAM = "StopPhotoStream";

[[nodiscard]] PeerReply EnableCamera(bool enable);
[[nodiscard]] PeerReply TakePhoto();

// A series, which goes on until it is stopped.
[[nodiscard]] PeerReply TakePhotoStream(int interval_s);
[[nodiscard]] PeerReply StopPhotoStream();

// The sender of its signals; null before Peers has created the proxies.
[[nodiscard]] const PhotoManagerProxy* Signals();

// Who answers under its name; null where that is not known (see Peers).
[[nodiscard]] const PeerOwner* Owner();

} // namespace PhotoManager
