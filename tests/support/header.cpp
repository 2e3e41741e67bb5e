// SPDX-License-Identifier: BSD-2-Clause
//
// Compiles the header that all test programs share.
