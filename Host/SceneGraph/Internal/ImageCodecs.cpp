// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/ImageCodecs.h"

#include <dlfcn.h>

namespace osg {

namespace {

/// The folder of the library that this code lies in, with its closing slash; "" leaves the search to the loader.
std::string ownFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void *>(&ownFolder), &info) == 0 || !info.dli_fname)
        return {};
    const std::string path = info.dli_fname;
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string loaderReason()
{
    const char *reason = dlerror();
    return reason ? reason : "The library for pictures cannot be loaded";
}

Result<const ImageCodecs *> loadLibrary()
{
    void *library = dlopen((ownFolder() + KX_IMAGE_CODECS_FILE).c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return Failure{loaderReason()};
    const auto entry = reinterpret_cast<ImageCodecs::Entry>(dlsym(library, ImageCodecs::EntryPoint));
    if (!entry)
        return Failure{loaderReason()};
    return entry();
}

} // namespace

Result<const ImageCodecs *> ImageCodecs::load()
{
    static const Result<const ImageCodecs *> codecs = loadLibrary();
    return codecs;
}

} // namespace osg
