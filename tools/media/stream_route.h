// SPDX-License-Identifier: BSD-2-Clause
//
// The ways that a stream's packets take from the input to the output.
#pragma once

#include "media/media_input.h"
#include "media/media_output.h"
#include "media/stream_plan.h"
#include "media/time_window.h"

#include <memory>

namespace nkdraw::media {

class StreamRoute {
 public:
  StreamRoute() = default;
  StreamRoute(const StreamRoute&) = delete;
  StreamRoute& operator=(const StreamRoute&) = delete;
  virtual ~StreamRoute() = default;

  /// Takes a packet of the stream, whose times are the input's.
  virtual void take(AVPacket& packet) = 0;
  /// Writes what is left.
  virtual void finish() {}
  /// Whether no packet is needed any more.
  [[nodiscard]] virtual bool isThrough() const = 0;
};

/// Where a route leads.
struct RouteEnds {
  MediaInput& input;
  const AVStream& from;
  MediaOutput& output;
  AVStream& to;
  TimeWindow window;
};

/// The route of a plan that copies or converts. It describes `to`, whose facts the caller has
/// copied. Throws Failure.
[[nodiscard]] std::unique_ptr<StreamRoute> routeFor(const RouteEnds& ends, const StreamPlan& plan);

}  // namespace nkdraw::media
