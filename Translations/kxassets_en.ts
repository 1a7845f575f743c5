<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AssetActions</name>
    <message numerus="yes">
        <source>Tags of %n asset(s)</source>
        <translation>
            <numerusform>Tags of %n asset</numerusform>
            <numerusform>Tags of %n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>New previews of %n asset(s)</source>
        <translation>
            <numerusform>New preview of %n asset</numerusform>
            <numerusform>New previews of %n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Saving of %n object(s)</source>
        <translation>
            <numerusform>Saving of %n object</numerusform>
            <numerusform>Saving of %n objects</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Saving of %n material(s)</source>
        <translation>
            <numerusform>Saving of %n material</numerusform>
            <numerusform>Saving of %n materials</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Saving over %n asset(s)</source>
        <translation>
            <numerusform>Saving over %n asset</numerusform>
            <numerusform>Saving over %n assets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DetailsPane</name>
    <message numerus="yes">
        <source>%n assets</source>
        <translation>
            <numerusform>%n asset</numerusform>
            <numerusform>%n assets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailureBox</name>
    <message numerus="yes">
        <source>... and %n more.</source>
        <translation>
            <numerusform>... and %n more.</numerusform>
            <numerusform>... and %n more.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileImports</name>
    <message numerus="yes">
        <source>Import of %n asset(s)</source>
        <translation>
            <numerusform>Import of %n asset</numerusform>
            <numerusform>Import of %n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n asset(s) imported</source>
        <translation>
            <numerusform>%n asset imported</numerusform>
            <numerusform>%n assets imported</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ImportDialog</name>
    <message numerus="yes">
        <source>Import %n file(s) into &quot;%1&quot;.</source>
        <translation>
            <numerusform>Import %n file into &quot;%1&quot;.</numerusform>
            <numerusform>Import %n files into &quot;%1&quot;.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LibraryActions</name>
    <message numerus="yes">
        <source>Move of %n asset(s)</source>
        <translation>
            <numerusform>Move of %n asset</numerusform>
            <numerusform>Move of %n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move of %n folder(s)</source>
        <translation>
            <numerusform>Move of %n folder</numerusform>
            <numerusform>Move of %n folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Deletion of %n asset(s)</source>
        <translation>
            <numerusform>Deletion of %n asset</numerusform>
            <numerusform>Deletion of %n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Deletion of %n folder(s)</source>
        <translation>
            <numerusform>Deletion of %n folder</numerusform>
            <numerusform>Deletion of %n folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Restoring of %n deleted thing(s)</source>
        <translation>
            <numerusform>Restoring of %n deleted thing</numerusform>
            <numerusform>Restoring of %n deleted things</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%n asset(s)</source>
        <translation>
            <numerusform>%n asset</numerusform>
            <numerusform>%n assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n selected</source>
        <translation>
            <numerusform>, %n selected</numerusform>
            <numerusform>, %n selected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ScanProgress</name>
    <message numerus="yes">
        <source>Reading &quot;%1&quot;: %n asset(s)</source>
        <translation>
            <numerusform>Reading &quot;%1&quot;: %n asset</numerusform>
            <numerusform>Reading &quot;%1&quot;: %n assets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SceneSide</name>
    <message numerus="yes">
        <source>%n stored asset(s) will be replaced by what the scene has of them.</source>
        <translation>
            <numerusform>%n stored asset will be replaced by what the scene has of it.</numerusform>
            <numerusform>%n stored assets will be replaced by what the scene has of them.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrashDialog</name>
    <message numerus="yes">
        <source>%n deleted asset(s) and folder(s) will be removed from the disk for good.
This cannot be undone.</source>
        <translation>
            <numerusform>%n deleted asset or folder will be removed from the disk for good.
This cannot be undone.</numerusform>
            <numerusform>%n deleted assets and folders will be removed from the disk for good.
This cannot be undone.</numerusform>
        </translation>
    </message>
</context>
</TS>
