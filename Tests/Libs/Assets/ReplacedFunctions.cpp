// SPDX-License-Identifier: Apache-2.0
#include "ReplacedFunctions.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Rendering/kxOSGWidget.h"

#include <QImageReader>
#include <QTextCodec>
#include <QTextStream>

#include <bit>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

namespace {

ReplacedFunctions *theReplaced = nullptr;

/// Member functions are called as the platform's binary interface has it: the object comes first.
template <class Function> Function *original(const char *symbol)
{
    void *address = dlsym(RTLD_NEXT, symbol);
    if (!address) {
        std::fprintf(stderr, "no library has %s\n", symbol);
        std::abort();
    }
    return std::bit_cast<Function *>(address);
}

} // namespace

ReplacedFunctions::ReplacedFunctions()
{
    theReplaced = this;
}

ReplacedFunctions::~ReplacedFunctions()
{
    theReplaced = nullptr;
}

bool kxAssetItem::readMetaData(const kxAssetItemDocument &document)
{
    static auto *const read = original<bool(kxAssetItem *, const kxAssetItemDocument &)>(
        "_ZN11kxAssetItem12readMetaDataERK19kxAssetItemDocument");
    return !(theReplaced && theReplaced->readingMetadataFails) && read(this, document);
}

bool kxAssetItem::writeMetaData(kxAssetItemDocument &document) const
{
    static auto *const write = original<bool(const kxAssetItem *, kxAssetItemDocument &)>(
        "_ZNK11kxAssetItem13writeMetaDataER19kxAssetItemDocument");
    return !(theReplaced && theReplaced->writingMetadataFails) && write(this, document);
}

kxPreviewImageLoader *kxAssetItem::getPreviewImageLoader()
{
    static auto *const getLoader = original<kxPreviewImageLoader *()>("_ZN11kxAssetItem21getPreviewImageLoaderEv");
    return theReplaced && theReplaced->previewLoaderIsMissing ? nullptr : getLoader();
}

bool kxAssetItemFactory::addItem(kxAssetItem *item)
{
    static auto *const add =
        original<bool(kxAssetItemFactory *, kxAssetItem *)>("_ZN18kxAssetItemFactory7addItemEP11kxAssetItem");
    return !(theReplaced && theReplaced->addingItemsFails) && add(this, item);
}

osg::MaterialPtr kxDefaultEnvironment::getDefault()
{
    static auto *const getDefault = original<osg::MaterialPtr()>("_ZN20kxDefaultEnvironment10getDefaultEv");
    return theReplaced && theReplaced->defaultEnvironment ? *theReplaced->defaultEnvironment : getDefault();
}

osg::NodePtr kxSceneplateUtils::getSceneplateRoot()
{
    static auto *const getRoot = original<osg::NodePtr()>("_ZN17kxSceneplateUtils17getSceneplateRootEv");
    if (theReplaced && theReplaced->whenSceneplateRootIsAskedFor)
        theReplaced->whenSceneplateRootIsAskedFor();
    return getRoot();
}

bool kxNodeUtils::setMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material, bool announce, bool replace)
{
    static auto *const set = original<bool(const osg::NodePtr &, const osg::MaterialPtr &, bool, bool)>(
        "_ZN11kxNodeUtils11setMaterialERKN3osg5FCPtrINS1_INS0_17FieldContainerPtrENS0_19AttachmentContainerEEENS0_"
        "4NodeEEERKNS1_IS4_NS0_8MaterialEEEbb");
    if (theReplaced)
        theReplaced->assignments.push_back(std::string(announce ? "with a word" : "quietly") +
                                           (replace ? ", replacing" : ", keeping"));
    return set(node, material, announce, replace);
}

void kxNodeUtils::removeAttachment(const osg::NodePtr &node, const osg::FieldContainerType &type)
{
    static auto *const remove = original<void(const osg::NodePtr &, const osg::FieldContainerType &)>(
        "_ZN11kxNodeUtils16removeAttachmentERKN3osg5FCPtrINS1_INS0_17FieldContainerPtrENS0_19AttachmentContainerEEENS0_"
        "4NodeEEERKNS0_18FieldContainerTypeE");
    if (theReplaced)
        theReplaced->relieved.push_back(node);
    remove(node, type);
}

kxOSGWidget *kxOSGWidget::getMGLW(int index)
{
    static auto *const getView = original<kxOSGWidget *(int)>("_ZN11kxOSGWidget7getMGLWEi");
    if (theReplaced)
        theReplaced->viewsAskedFor.push_back(index);
    return getView(index);
}

void kxMessage::set(const std::string &name, const boost::any &value, bool replace)
{
    static auto *const set = original<void(kxMessage *, const std::string &, const boost::any &, bool)>(
        "_ZN9kxMessage3setERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEERKN5boost3anyEb");
    if (theReplaced)
        theReplaced->messageAttributes.push_back(name + (replace ? " replaces" : " keeps"));
    set(this, name, value, replace);
}

QList<QByteArray> QImageReader::supportedImageFormats()
{
    static auto *const getFormats = original<QList<QByteArray>()>("_ZN12QImageReader21supportedImageFormatsEv");
    if (theReplaced && theReplaced->whenFormatsAreAskedFor)
        theReplaced->whenFormatsAreAskedFor();
    return getFormats();
}

void QDomNode::save(QTextStream &stream, int indentation, EncodingPolicy policy) const
{
    static auto *const save = original<void(const QDomNode *, QTextStream &, int, EncodingPolicy)>(
        "_ZNK8QDomNode4saveER11QTextStreamiNS_14EncodingPolicyE");
    if (theReplaced && isElement())
        theReplaced->writings.push_back({stream.codec()->name().toStdString(), indentation, policy});
    save(this, stream, indentation, policy);
}
