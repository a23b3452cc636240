// Loads and unloads the library in a program that reaches it through a module only.
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

/// Opens the module, calls its function and closes the module. Returns the function's result.
template <class Result, class... Arguments>
Result callInModule(const char* name, Arguments... arguments) {
    void* const module = dlopen(PROBE_MODULE, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(module, nullptr) << dlerror();
    const auto function = reinterpret_cast<Result (*)(Arguments...)>(dlsym(module, name));
    const Result result = function(arguments...);
    dlclose(module);
    EXPECT_EQ(dlopen(PROBE_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr);
    return result;
}

TEST(Module, DeletesTheInstalledHandlerOnUnload) {
    int handlerEnds = 0, objectEnds = 0;
    EXPECT_EQ(callInModule<int>("probeInstallHandler", &handlerEnds, &objectEnds), 0);
    EXPECT_EQ(handlerEnds, 1);
    EXPECT_EQ(objectEnds, 1)
        << "an object that the handler's destructor releases is deleted at once";
}

TEST(Module, StartsWithoutAnOriginAtEachLoad) {
    for (int load = 0; load < 2; ++load) {
        EXPECT_TRUE(callInModule<bool>("probeGiveOrigin")) << load;
    }
}

}  // namespace
