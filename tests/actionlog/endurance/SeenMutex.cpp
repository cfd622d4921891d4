// Qt is built without ThreadSanitizer, which so doesn't see what a QMutex orders. These two stand
// in front of Qt's and tell. Linked to tests only.

#ifdef __SANITIZE_THREAD__

#include <QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

using Operation = void (*)(QMutex *);

Operation ofQt(const char *symbol)
{
    return reinterpret_cast<Operation>(::dlsym(RTLD_NEXT, symbol));
}

} // namespace

void QMutex::lock() noexcept
{
    static const Operation lockOfQt = ofQt("_ZN6QMutex4lockEv");
    lockOfQt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const Operation unlockOfQt = ofQt("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockOfQt(this);
}

#endif
