#pragma once

#include "Status.h"

#include <functional>

// Sends the answer to one request. Called once.
using Answer = std::function<void(Status)>;
