// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PythonInterpreter.h"

#include "AssetSession/kxPythonFolder.h"

#include <QCoreApplication>
#include <QFile>

#include <pybind11/pybind11.h>

namespace py = pybind11;

namespace {

PyStatus initialize()
{
    PyPreConfig before;
    PyPreConfig_InitPythonConfig(&before);
    before.parse_argv = 0;
    before.utf8_mode = 1;
    before.coerce_c_locale = 0; // the program's locale is its own
    PyStatus status = Py_PreInitialize(&before);
    if (PyStatus_Exception(status))
        return status;
    PyConfig config;
    PyConfig_InitPythonConfig(&config);
    config.parse_argv = 0;
    config.install_signal_handlers = 0; // Ctrl+C in a terminal ends the program, and is no exception in it
    status = PyConfig_SetBytesString(&config, &config.program_name, KX_PYTHON);
    if (!PyStatus_Exception(status))
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    return status;
}

void addModuleFolder()
{
    const QString folder = kxPythonFolder::find();
    if (!folder.isEmpty())
        py::module_::import("sys").attr("path").attr("insert")(0, QFile::encodeName(folder).toStdString());
}

/// Threads that scripts left running stop here, before what they use goes with the program.
void haltThreads()
{
    PyGILState_Ensure();
}

} // namespace

QString PythonInterpreter::start()
{
    if (Py_IsInitialized())
        return {};
    const PyStatus status = initialize();
    if (PyStatus_Exception(status))
        return QCoreApplication::translate("PythonInterpreter", "Python cannot be started: %1")
            .arg(QString::fromUtf8(status.err_msg ? status.err_msg : ""));
    addModuleFolder();
    qAddPostRoutine(&haltThreads);
    PyEval_SaveThread(); // whoever needs the lock takes it
    return {};
}
