/* SPDX-License-Identifier: BSD-2-Clause */
/* A module with one entry. */
int testModuleAnswer(void);

int testModuleAnswer(void) { return TEST_MODULE_ANSWER; }
