// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxVersion.h"
#include "Python/Containers.h"
#include "Python/LibraryCall.h"
#include "Python/Session.h"

#include <QCoreApplication>

namespace py = pybind11;

PYBIND11_MODULE(kx, module)
{
    module.doc() = "Asset libraries for 3D scenes: materials, geometry, environments and sceneplates.\n\n"
                   "Use it from the thread that imported it. Failures are kx.Error, with the reason.";
    module.attr("__version__") = kxGetVersionString();
    py::register_exception<kxPython::Error>(module, "Error", PyExc_RuntimeError);
    kxPython::bindContainers(module);
    kxPython::bindImages(module);
    kxPython::bindScene(module);
    kxPython::bindLibrary(module);
    kxPython::bindServices(module);
    module.def(
        "process_events", [] { QCoreApplication::processEvents(); },
        "Lets happen what was put off, in a script that runs long.");
    kxPython::Session::ensure();
    py::module_::import("atexit").attr("register")(py::cpp_function(&kxPython::Session::close));
}
