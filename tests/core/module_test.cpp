// Load and unload of the library, in a program that reaches it through a module only.
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

class Module {
public:
    Module() : handle(dlopen(PROBE_MODULE, RTLD_NOW | RTLD_LOCAL)) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { close(); }

    bool isOpen() const { return handle != nullptr; }
    template <class Signature>
    Signature* function(const char* name) const {
        return reinterpret_cast<Signature*>(dlsym(handle, name));
    }
    void close() {
        if (handle != nullptr) { dlclose(handle); }
        handle = nullptr;
    }

private:
    void* handle;
};

TEST(Module, DeletesTheInstalledHandlerWhenItIsUnloaded) {
    int handlerEnds = 0;
    int objectEnds = 0;
    Module module;
    ASSERT_TRUE(module.isOpen()) << dlerror();
    module.function<void(int*, int*)>("probeInstallHandler")(&handlerEnds, &objectEnds);
    EXPECT_EQ(handlerEnds, 0);

    module.close();

    EXPECT_EQ(handlerEnds, 1);
    EXPECT_EQ(objectEnds, 1) << "what the handler releases in its end is deleted directly";
    EXPECT_EQ(dlopen(PROBE_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST(Module, StartsWithoutAnOriginAtEachLoad) {
    for (int load = 0; load < 2; ++load) {
        Module module;
        ASSERT_TRUE(module.isOpen()) << dlerror();
        ASSERT_TRUE(module.function<bool()>("probeHasGlobal")());
        EXPECT_FALSE(module.function<bool()>("probeIsOriginGiven")());
        EXPECT_TRUE(module.function<bool()>("probeGiveOrigin")());
        EXPECT_TRUE(module.function<bool()>("probeIsOriginGiven")());
    }
}

}  // namespace
