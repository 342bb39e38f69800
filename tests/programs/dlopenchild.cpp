// Opens a module that is linked to the library, uses it, and closes it again: dlopenchild MODULE

#include <QCoreApplication>

#include <dlfcn.h>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    void *module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    reinterpret_cast<void (*)()>(dlsym(module, "editService"))();
    if (dlclose(module) != 0)
        return 2;
    // The module is unloaded, the library is not.
    void *library = dlopen("libgesture_api.so.1", RTLD_NOW | RTLD_NOLOAD);
    return library ? 0 : 3;
}
