#if defined(__SANITIZE_ADDRESS__)

// What these libraries keep until the end of the process is theirs; a leak of our own has a frame
// of ours nearer to it and is still reported.
extern "C" const char *__lsan_default_suppressions();

extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig.so\n"
           "leak:libcrypto.so\n" // random numbers of a thread that ends beside the process
           "leak:libdbus-1.so\n"
           "leak:libglib-2.0.so\n";
}

#endif
