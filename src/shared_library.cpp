// SPDX-License-Identifier: MIT
// The shared library has no code of its own: it is quarnel_core, linked whole,
// with only the C interface left visible.
