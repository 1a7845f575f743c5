// SPDX-License-Identifier: Apache-2.0
#include "Python/Containers.h"
#include "Python/LibraryCall.h"
#include "SceneGraph/EditCP.h"

namespace py = pybind11;

namespace kxPython {

namespace {

std::string formatOf(const osg::ImagePtr &image)
{
    switch (image->pixelType()) {
    case osg::PixelType::Half:
        return "e";
    case osg::PixelType::Float:
        return "f";
    case osg::PixelType::UInt8:
        break;
    }
    return "B";
}

/// The pixels as they are: rows from the bottom up, then pixels, then channels.
py::buffer_info bufferOf(ImageObject &object)
{
    const osg::ImagePtr image = object.image();
    const auto channels = static_cast<py::ssize_t>(image->getChannels());
    const auto pixel = static_cast<py::ssize_t>(image->bytesPerPixel());
    const auto width = static_cast<py::ssize_t>(image->getWidth());
    const auto height = static_cast<py::ssize_t>(image->getHeight());
    if (!image->isValid() || channels == 0)
        throw py::buffer_error("the image holds no pixels");
    // Read only: a change would pass by everybody who has to know of it.
    auto *data = const_cast<std::uint8_t *>(image->getPixels().data());
    return {data, pixel / channels,          formatOf(image),
            3,    {height, width, channels}, {pixel * width, pixel, pixel / channels},
            true};
}

ImageObject readImage(const py::object &path)
{
    const std::string file = pathOf(path);
    const osg::FCRef<osg::Image> image(osg::Image::create());
    const LibraryCall call;
    bool isRead = false;
    {
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        isRead = image->read(file);
    }
    if (!isRead)
        call.fail("'" + file + "' cannot be read");
    return {{osg::FCRef<osg::FieldContainer>(image.get())}};
}

void writeImage(const ImageObject &object, const py::object &path)
{
    const std::string file = pathOf(path);
    const LibraryCall call;
    if (!object.image()->write(file))
        call.fail("'" + file + "' cannot be written");
}

} // namespace

void bindImages(py::module_ &module)
{
    py::class_<ImageObject, ContainerObject>(module, "Image", py::buffer_protocol(),
                                             "A picture. memoryview(image) and numpy.asarray(image) see its pixels: "
                                             "rows from the bottom up, columns, channels.")
        .def(py::init(&readImage), py::arg("path"), "Reads a file of any format that is known.")
        .def_property_readonly("width", [](const ImageObject &object) { return object.image()->getWidth(); })
        .def_property_readonly("height", [](const ImageObject &object) { return object.image()->getHeight(); })
        .def_property_readonly("channels", [](const ImageObject &object) { return object.image()->getChannels(); })
        .def("save", &writeImage, py::arg("path"), "Writes a file; the extension says in which format.")
        .def("__repr__",
             [](const ImageObject &object) {
                 return "<kx.Image " + std::to_string(object.image()->getWidth()) + " x " +
                        std::to_string(object.image()->getHeight()) + '>';
             })
        .def_buffer(&bufferOf);
}

} // namespace kxPython
