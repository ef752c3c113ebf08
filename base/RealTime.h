// Marks a function that runs on the audio thread: it neither allocates, nor locks, nor makes a
// system call, nor throws. Newer clangs check that while it runs (-fsanitize=realtime).
#pragma once

#ifdef __has_cpp_attribute
#if __has_cpp_attribute(clang::nonblocking)
#define ORMUND_NONBLOCKING [[clang::nonblocking]]
#endif
#endif
#ifndef ORMUND_NONBLOCKING
#define ORMUND_NONBLOCKING
#endif
