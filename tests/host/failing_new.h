// SPDX-License-Identifier: BSD-2-Clause
//
// Running out of memory on purpose.
#pragma once

namespace nkdraw::test {

/// During its lifetime, every operator new for a single object fails on this thread, except for the
/// first `allowed` calls.
class FailingNew {
 public:
  explicit FailingNew(int allowed);
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;
  ~FailingNew();
};

}  // namespace nkdraw::test
