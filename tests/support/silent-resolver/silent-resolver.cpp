// Loaded before the system's library (LD_PRELOAD): a look-up of a name says that it has begun, by
// making the file that PEVORA_TEST_LOOKUP names, and never ends.

#include <netdb.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

extern "C" int getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**)
{
    if (const char* path = std::getenv("PEVORA_TEST_LOOKUP"))
        ::close(::open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    for (;;)
        ::pause();
}
