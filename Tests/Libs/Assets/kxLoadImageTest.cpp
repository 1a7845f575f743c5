// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/kxLoadImage.h"

#include "LibraryFixture.h"
#include "SceneGraph/ExternalThread.h"
#include "TestUrlManager.h"

#include <QImage>
#include <QMetaMethod>

#include <utility>
#include <vector>

namespace {

class kxLoadImageTest : public LibraryFixture
{
protected:
    /// What a task for \a directory says in a run on this thread.
    std::vector<std::pair<QUrl, QImage *>> finishedBy(const QUrl &directory)
    {
        std::vector<std::pair<QUrl, QImage *>> finished;
        kxLoadImage task(directory, &_image);
        QObject::connect(&task, &kxLoadImage::finished, &task, [this, &finished](const QUrl &url, QImage *image) {
            finished.emplace_back(url, image);
            _knownThreads = osg::ExternalThread::knownCount();
        });
        task.run();
        return finished;
    }

    QImage _image;
    std::size_t _knownThreads = 1;
};

/// For URLs like "odd:/filled" and "odd:/empty": what it returns says nothing of what it loaded.
class OddManager final : public TestUrlManager
{
public:
    bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("odd"); }
    bool loadImageFromDir(const QUrl &url, QImage *image) const override
    {
        if (url.fileName() != QLatin1String("filled"))
            return true;
        *image = QImage(3, 2, QImage::Format_RGB32);
        return false;
    }
};

} // namespace

TEST_F(kxLoadImageTest, DeclaresOneSignal)
{
    const QMetaObject &meta = kxLoadImage::staticMetaObject;
    const int offset = meta.methodOffset();

    EXPECT_STREQ(meta.className(), "kxLoadImage");
    ASSERT_EQ(meta.methodCount() - offset, 1);
    EXPECT_EQ(meta.method(offset).methodSignature(), "finished(QUrl,QImage*)");
    EXPECT_EQ(meta.method(offset).methodType(), QMetaMethod::Signal);
}

TEST_F(kxLoadImageTest, AnswersForBothItsBases)
{
    kxLoadImage task(url("MAT_x"), &_image);

    EXPECT_EQ(task.qt_metacast("kxLoadImage"), &task);
    EXPECT_EQ(task.qt_metacast("QRunnable"), static_cast<QRunnable *>(&task));
    EXPECT_EQ(task.qt_metacast("QObject"), static_cast<QObject *>(&task));
    EXPECT_EQ(static_cast<void *>(static_cast<QObject *>(&task)), &task) << "the first of its bases";
}

TEST_F(kxLoadImageTest, LeavesItsDeletionToThePool)
{
    const kxLoadImage task(url("MAT_x"), &_image);

    EXPECT_TRUE(task.autoDelete());
}

TEST_F(kxLoadImageTest, FillsTheImageAndFinishes)
{
    QImage stored(3, 2, QImage::Format_RGB32);
    stored.fill(Qt::red);
    writeFile("MAT_x/x.xml", "<item/>");
    ASSERT_TRUE(stored.save(QString::fromStdString(_folder.file("MAT_x/x.png"))));

    const auto finished = finishedBy(url("MAT_x"));

    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0], (std::pair<QUrl, QImage *>(url("MAT_x"), &_image)));
    EXPECT_EQ(_image.size(), QSize(3, 2));
    EXPECT_EQ(_knownThreads, 0U) << "forgotten before anybody is told";
    EXPECT_EQ(osg::ExternalThread::knownCount(), 0U);
}

TEST_F(kxLoadImageTest, FinishesWithAnEmptyImageWithoutAPreview)
{
    writeFile("MAT_x/x.xml", "<item/>");

    const auto finished = finishedBy(url("MAT_x"));

    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0], (std::pair<QUrl, QImage *>(url("MAT_x"), &_image)));
    EXPECT_TRUE(_image.isNull());
}

TEST_F(kxLoadImageTest, FinishesWithAnEmptyImageWithoutABackEnd)
{
    const QUrl nobodys(QStringLiteral("nobody://place/MAT_x"));

    const auto finished = finishedBy(nobodys);

    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0], (std::pair<QUrl, QImage *>(nobodys, &_image)));
    EXPECT_TRUE(_image.isNull());
}

TEST_F(kxLoadImageTest, FinishesWhateverTheBackEndSays)
{
    static OddManager manager;
    kxUrlManager::registerManager(&manager);

    EXPECT_EQ(finishedBy(QUrl(QStringLiteral("odd:/empty"))).size(), 1U);
    EXPECT_TRUE(_image.isNull());
    EXPECT_EQ(finishedBy(QUrl(QStringLiteral("odd:/filled"))).size(), 1U);
    EXPECT_EQ(_image.size(), QSize(3, 2));
}
