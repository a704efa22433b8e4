#pragma once

// Work handed to a thread pool goes through Qt's own futex-based lock, which ThreadSanitizer
// cannot see. The sender marks the hand-over before it starts the work and the worker accepts
// it first thing, so the checker knows the worker reads what the sender wrote. Nothing in other
// builds.
#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);

inline void markHandOver(const void *token)
{
    __tsan_release(const_cast<void *>(token));
}

inline void acceptHandOver(const void *token)
{
    __tsan_acquire(const_cast<void *>(token));
}
#else
inline void markHandOver(const void *) {}
inline void acceptHandOver(const void *) {}
#endif
