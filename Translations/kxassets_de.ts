<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AssetActions</name>
    <message>
        <source>&quot;%1&quot; was not saved: %2</source>
        <translation>„%1“ wurde nicht gespeichert: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not saved.</source>
        <translation>„%1“ wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>The tags of &quot;%1&quot; could not be changed.</source>
        <translation>Die Tags von „%1“ konnten nicht geändert werden.</translation>
    </message>
    <message>
        <source>The material &quot;%1&quot; could not be saved.</source>
        <translation>Das Material „%1“ konnte nicht gespeichert werden.</translation>
    </message>
    <message numerus="yes">
        <source>Tags of %n asset(s)</source>
        <translation>
            <numerusform>Tags von %n Asset</numerusform>
            <numerusform>Tags von %n Assets</numerusform>
        </translation>
    </message>
    <message>
        <source>An asset&apos;s tags were not changed: it is not in an open library any more.</source>
        <translation>Die Tags eines Assets wurden nicht geändert: Es liegt in keiner geöffneten Bibliothek mehr.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no tags: only materials have them.</source>
        <translation>„%1“ hat keine Tags: Nur Materialien haben welche.</translation>
    </message>
    <message numerus="yes">
        <source>New previews of %n asset(s)</source>
        <translation>
            <numerusform>Neue Vorschau von %n Asset</numerusform>
            <numerusform>Neue Vorschauen von %n Assets</numerusform>
        </translation>
    </message>
    <message>
        <source>Rendering previews</source>
        <translation>Vorschauen werden gerendert</translation>
    </message>
    <message>
        <source>No new preview could be made of &quot;%1&quot;.</source>
        <translation>Von „%1“ konnte keine neue Vorschau erstellt werden.</translation>
    </message>
    <message numerus="yes">
        <source>Saving of %n object(s)</source>
        <translation>
            <numerusform>Speichern von %n Objekt</numerusform>
            <numerusform>Speichern von %n Objekten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Saving of %n material(s)</source>
        <translation>
            <numerusform>Speichern von %n Material</numerusform>
            <numerusform>Speichern von %n Materialien</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was saved: something else is being done to the libraries.</source>
        <translation>Nichts wurde gespeichert: An den Bibliotheken wird gerade etwas anderes getan.</translation>
    </message>
    <message numerus="yes">
        <source>Saving over %n asset(s)</source>
        <translation>
            <numerusform>Überschreiben von %n Asset</numerusform>
            <numerusform>Überschreiben von %n Assets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AssetBrowser</name>
    <message>
        <source>Kind of assets</source>
        <translation>Art der Assets</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Search names, tags and types</source>
        <translation>Namen, Tags und Typen durchsuchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Show favourites only</source>
        <translation>Nur Favoriten zeigen</translation>
    </message>
    <message>
        <source>Show recently used assets only</source>
        <translation>Nur kürzlich verwendete Assets zeigen</translation>
    </message>
    <message>
        <source>Size of the tiles</source>
        <translation>Größe der Kacheln</translation>
    </message>
    <message>
        <source>Size of the tiles; Control and the mouse wheel change it too</source>
        <translation>Größe der Kacheln; auch mit Strg und dem Mausrad änderbar</translation>
    </message>
    <message>
        <source>Show tiles</source>
        <translation>Kacheln zeigen</translation>
    </message>
    <message>
        <source>Show a list with details</source>
        <translation>Liste mit Details zeigen</translation>
    </message>
    <message>
        <source>There are no assets yet.
Drop models or pictures here to import them.</source>
        <translation>Noch keine Assets vorhanden.
Modelle oder Bilder zum Importieren hierher ziehen.</translation>
    </message>
    <message>
        <source>No asset here matches the search.</source>
        <translation>Kein Asset hier passt zur Suche.</translation>
    </message>
    <message>
        <source>No favourites here yet.
The star in an asset&apos;s menu makes it one.</source>
        <translation>Hier gibt es noch keine Favoriten.
Der Stern im Menü eines Assets macht es dazu.</translation>
    </message>
    <message>
        <source>Nothing here was used lately.</source>
        <translation>Hier wurde in letzter Zeit nichts verwendet.</translation>
    </message>
    <message>
        <source>This folder holds no assets of this kind.
Drop models or pictures here to import them.</source>
        <translation>Dieser Ordner enthält keine Assets dieser Art.
Modelle oder Bilder zum Importieren hierher ziehen.</translation>
    </message>
</context>
<context>
    <name>AssetDelegate</name>
    <message>
        <source>No preview</source>
        <translation>Keine Vorschau</translation>
    </message>
</context>
<context>
    <name>AssetGrid</name>
    <message>
        <source>Assets as tiles</source>
        <translation>Assets als Kacheln</translation>
    </message>
</context>
<context>
    <name>AssetModel</name>
    <message>
        <source>Tags: %1</source>
        <translation>Tags: %1</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>favourite</source>
        <translation>Favorit</translation>
    </message>
</context>
<context>
    <name>AssetState</name>
    <message>
        <source>Same as the asset &quot;%1&quot; in the library</source>
        <translation>Gleich dem Asset „%1“ in der Bibliothek</translation>
    </message>
    <message>
        <source>Changed here; the asset &quot;%1&quot; in the library is different</source>
        <translation>Hier geändert; das Asset „%1“ in der Bibliothek ist anders</translation>
    </message>
    <message>
        <source>The asset &quot;%1&quot; in the library was changed since it was loaded</source>
        <translation>Das Asset „%1“ in der Bibliothek wurde seit dem Laden geändert</translation>
    </message>
    <message>
        <source>The asset is not in an open library</source>
        <translation>Das Asset liegt in keiner geöffneten Bibliothek</translation>
    </message>
</context>
<context>
    <name>AssetStates</name>
    <message>
        <source>It is used in the scene.</source>
        <translation>Wird in der Szene verwendet.</translation>
    </message>
    <message>
        <source>The copy in the scene was changed and differs from the stored asset.</source>
        <translation>Die Kopie in der Szene wurde geändert und weicht vom gespeicherten Asset ab.</translation>
    </message>
    <message>
        <source>The stored asset was saved again after it was loaded into the scene.</source>
        <translation>Das gespeicherte Asset wurde nach dem Laden in die Szene neu gespeichert.</translation>
    </message>
</context>
<context>
    <name>AssetTable</name>
    <message>
        <source>Assets as a list</source>
        <translation>Assets als Liste</translation>
    </message>
</context>
<context>
    <name>BatchProgress</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>ColorButton</name>
    <message>
        <source>several</source>
        <translation>mehrere</translation>
    </message>
</context>
<context>
    <name>DetailsPane</name>
    <message>
        <source>Details of the selected assets</source>
        <translation>Details der ausgewählten Assets</translation>
    </message>
    <message>
        <source>Select an asset to see what it is.</source>
        <translation>Ein Asset auswählen, um Näheres zu sehen.</translation>
    </message>
    <message>
        <source>Favourite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>Add a tag</source>
        <translation>Tag hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Identity</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message numerus="yes">
        <source>%n assets</source>
        <translation>
            <numerusform>%n Asset</numerusform>
            <numerusform>%n Assets</numerusform>
        </translation>
    </message>
    <message>
        <source>(different)</source>
        <translation>(verschieden)</translation>
    </message>
    <message>
        <source>Not used in the scene.</source>
        <translation>In der Szene nicht verwendet.</translation>
    </message>
    <message>
        <source>Only materials have tags.</source>
        <translation>Nur Materialien haben Tags.</translation>
    </message>
    <message>
        <source>Remove the tag &quot;%1&quot;</source>
        <translation>Tag „%1“ entfernen</translation>
    </message>
</context>
<context>
    <name>DirectoryMove</name>
    <message>
        <source>&quot;%1&quot; could not be moved: it is not there any more.</source>
        <translation>„%1“ konnte nicht verschoben werden: nicht mehr vorhanden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be moved: you may not write there.</source>
        <translation>„%1“ konnte nicht verschoben werden: keine Schreibberechtigung.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be moved: the disk is full.</source>
        <translation>„%1“ konnte nicht verschoben werden: Der Datenträger ist voll.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be moved.</source>
        <translation>„%1“ konnte nicht verschoben werden.</translation>
    </message>
</context>
<context>
    <name>DiskTrouble</name>
    <message>
        <source>The disk is full.</source>
        <translation>Der Datenträger ist voll.</translation>
    </message>
    <message>
        <source>You may not write there.</source>
        <translation>Dort darf nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Its folder is not there any more.</source>
        <translation>Der Ordner dafür ist nicht mehr da.</translation>
    </message>
    <message>
        <source>The drive does not answer. Is it connected?</source>
        <translation>Das Laufwerk antwortet nicht. Ist es angeschlossen?</translation>
    </message>
    <message>
        <source>Another program is using it.</source>
        <translation>Ein anderes Programm benutzt es gerade.</translation>
    </message>
    <message>
        <source>Its name is too long for the drive.</source>
        <translation>Der Name ist zu lang für das Laufwerk.</translation>
    </message>
    <message>
        <source>There is something of that name already.</source>
        <translation>Es gibt dort schon etwas mit diesem Namen.</translation>
    </message>
    <message>
        <source>The system reports error %1.</source>
        <translation>Das System meldet den Fehler %1.</translation>
    </message>
</context>
<context>
    <name>EnvironmentListModel</name>
    <message>
        <source>unnamed</source>
        <translation>unbenannt</translation>
    </message>
    <message>
        <source>%1, lights the scene</source>
        <translation>%1, beleuchtet die Szene</translation>
    </message>
    <message>
        <source>Lights the scene</source>
        <translation>Beleuchtet die Szene</translation>
    </message>
    <message>
        <source>Double-click or press Enter to light the scene with it</source>
        <translation>Doppelklick oder Eingabetaste beleuchtet die Szene damit</translation>
    </message>
</context>
<context>
    <name>EnvironmentPanel</name>
    <message>
        <source>Environments</source>
        <translation>Umgebungen</translation>
    </message>
    <message>
        <source>Environments that can light the scene</source>
        <translation>Umgebungen, die die Szene beleuchten können</translation>
    </message>
    <message>
        <source>Drag an environment asset here to light the scene with it.</source>
        <translation>Ein Umgebungs-Asset hierher ziehen, um die Szene damit zu beleuchten.</translation>
    </message>
    <message>
        <source>Light the Scene with It</source>
        <translation>Szene damit beleuchten</translation>
    </message>
    <message>
        <source>Remove from the Scene</source>
        <translation>Aus der Szene entfernen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
</context>
<context>
    <name>EnvironmentStep</name>
    <message>
        <source>The scene has no environments to switch between.</source>
        <translation>Die Szene hat keine Umgebungen, zwischen denen sich wechseln lässt.</translation>
    </message>
</context>
<context>
    <name>FailureBox</name>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message numerus="yes">
        <source>... and %n more.</source>
        <translation>
            <numerusform>... und %n weitere.</numerusform>
            <numerusform>... und %n weitere.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FieldEditor</name>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Translation</source>
        <translation>Verschiebung</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Skalierung</translation>
    </message>
    <message>
        <source>%1, strength</source>
        <translation>%1, Stärke</translation>
    </message>
    <message>
        <source>several</source>
        <translation>mehrere</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
</context>
<context>
    <name>FieldLabels</name>
    <message>
        <source>Anisotropy</source>
        <translation>Anisotropie</translation>
    </message>
    <message>
        <source>At</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Bump strength</source>
        <translation>Reliefstärke</translation>
    </message>
    <message>
        <source>Bump texture</source>
        <translation>Relieftextur</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Choice</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Clear coat</source>
        <translation>Klarlack</translation>
    </message>
    <message>
        <source>Clear coat roughness</source>
        <translation>Rauheit des Klarlacks</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Diffuse color</source>
        <translation>Diffuse Farbe</translation>
    </message>
    <message>
        <source>Diffuse texture</source>
        <translation>Diffuse Textur</translation>
    </message>
    <message>
        <source>Far</source>
        <translation>Fern</translation>
    </message>
    <message>
        <source>Field of view</source>
        <translation>Bildwinkel</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Ground color</source>
        <translation>Bodenfarbe</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Incandescence color</source>
        <translation>Leuchtfarbe</translation>
    </message>
    <message>
        <source>Incandescence texture</source>
        <translation>Leuchttextur</translation>
    </message>
    <message>
        <source>Index of refraction</source>
        <translation>Brechungsindex</translation>
    </message>
    <message>
        <source>Inner cone angle</source>
        <translation>Innerer Kegelwinkel</translation>
    </message>
    <message>
        <source>Intensity</source>
        <translation>Intensität</translation>
    </message>
    <message>
        <source>Is front</source>
        <translation>Im Vordergrund</translation>
    </message>
    <message>
        <source>Is on</source>
        <translation>Eingeschaltet</translation>
    </message>
    <message>
        <source>Is two sided</source>
        <translation>Beidseitig</translation>
    </message>
    <message>
        <source>Is visible</source>
        <translation>Sichtbar</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Matrix</source>
        <translation>Matrix</translation>
    </message>
    <message>
        <source>Metalness</source>
        <translation>Metallanteil</translation>
    </message>
    <message>
        <source>Metalness texture</source>
        <translation>Metalltextur</translation>
    </message>
    <message>
        <source>Near</source>
        <translation>Nah</translation>
    </message>
    <message>
        <source>Normal texture</source>
        <translation>Normalentextur</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>Deckkraft</translation>
    </message>
    <message>
        <source>Outer cone angle</source>
        <translation>Äußerer Kegelwinkel</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Roughness</source>
        <translation>Rauheit</translation>
    </message>
    <message>
        <source>Roughness texture</source>
        <translation>Rauheitstextur</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Skalierung</translation>
    </message>
    <message>
        <source>Sheen</source>
        <translation>Schimmer</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Specular color</source>
        <translation>Glanzfarbe</translation>
    </message>
    <message>
        <source>Sun direction</source>
        <translation>Sonnenrichtung</translation>
    </message>
    <message>
        <source>Sun size</source>
        <translation>Sonnengröße</translation>
    </message>
    <message>
        <source>Tint</source>
        <translation>Tönung</translation>
    </message>
    <message>
        <source>Translation</source>
        <translation>Verschiebung</translation>
    </message>
    <message>
        <source>Transmission color</source>
        <translation>Transmissionsfarbe</translation>
    </message>
    <message>
        <source>Transparency</source>
        <translation>Transparenz</translation>
    </message>
    <message>
        <source>Transparency texture</source>
        <translation>Transparenztextur</translation>
    </message>
    <message>
        <source>Turbidity</source>
        <translation>Trübung</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>Directional</source>
        <translation>Gerichtet</translation>
    </message>
    <message>
        <source>Spot</source>
        <translation>Spot</translation>
    </message>
    <message>
        <source>Repeat</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Clamp</source>
        <translation>Begrenzen</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>Umgebung</translation>
    </message>
</context>
<context>
    <name>FieldStep</name>
    <message>
        <source>What was to be changed is no longer part of the scene.</source>
        <translation>Was geändert werden sollte, gehört nicht mehr zur Szene.</translation>
    </message>
    <message>
        <source>The property &quot;%1&quot; does not take this value.</source>
        <translation>Die Eigenschaft „%1“ nimmt diesen Wert nicht an.</translation>
    </message>
</context>
<context>
    <name>FileImports</name>
    <message>
        <source>Import files</source>
        <translation>Dateien importieren</translation>
    </message>
    <message>
        <source>Add a library first: there is no folder to import into.</source>
        <translation>Erst eine Bibliothek hinzufügen: Noch gibt es keinen Ordner, in den importiert werden kann.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is of a kind that cannot be imported.</source>
        <translation>„%1“ ist von einer Art, die nicht importiert werden kann.</translation>
    </message>
    <message numerus="yes">
        <source>Import of %n asset(s)</source>
        <translation>
            <numerusform>Import von %n Asset</numerusform>
            <numerusform>Import von %n Assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n asset(s) imported</source>
        <translation>
            <numerusform>%n Asset importiert</numerusform>
            <numerusform>%n Assets importiert</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FolderDialog</name>
    <message>
        <source>Move to folder</source>
        <translation>In Ordner verschieben</translation>
    </message>
    <message>
        <source>Libraries and folders</source>
        <translation>Bibliotheken und Ordner</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
</context>
<context>
    <name>FolderModel</name>
    <message>
        <source>All libraries</source>
        <translation>Alle Bibliotheken</translation>
    </message>
    <message>
        <source>Waiting for &quot;%1&quot; to answer</source>
        <translation>Warten auf eine Antwort von „%1“</translation>
    </message>
</context>
<context>
    <name>FolderTree</name>
    <message>
        <source>Libraries and folders</source>
        <translation>Bibliotheken und Ordner</translation>
    </message>
</context>
<context>
    <name>ImportDialog</name>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message numerus="yes">
        <source>Import %n file(s) into &quot;%1&quot;.</source>
        <translation>
            <numerusform>%n Datei in „%1“ importieren.</numerusform>
            <numerusform>%n Dateien in „%1“ importieren.</numerusform>
        </translation>
    </message>
    <message>
        <source>A geometry asset of each model</source>
        <translation>Ein Geometrie-Asset je Modell</translation>
    </message>
    <message>
        <source>A geometry asset of each part</source>
        <translation>Ein Geometrie-Asset je Teil</translation>
    </message>
    <message>
        <source>Their materials only</source>
        <translation>Nur ihre Materialien</translation>
    </message>
    <message>
        <source>Environments</source>
        <translation>Umgebungen</translation>
    </message>
    <message>
        <source>Front plates</source>
        <translation>Vordergrund-Plates</translation>
    </message>
    <message>
        <source>Back plates</source>
        <translation>Hintergrund-Plates</translation>
    </message>
    <message>
        <source>&amp;Models become</source>
        <translation>&amp;Modelle importieren als</translation>
    </message>
    <message>
        <source>&amp;Pictures become</source>
        <translation>&amp;Bilder importieren als</translation>
    </message>
</context>
<context>
    <name>ImportJob</name>
    <message>
        <source>Importing</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Importing &quot;%1&quot; (%2 of %3)</source>
        <translation>„%1“ wird importiert (%2 von %3)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be imported.</source>
        <translation>„%1“ konnte nicht importiert werden.</translation>
    </message>
</context>
<context>
    <name>ImportTrouble</name>
    <message>
        <source>It is not there any more.</source>
        <translation>Die Datei ist nicht mehr da.</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>Die Datei ist leer.</translation>
    </message>
    <message>
        <source>It holds no materials.</source>
        <translation>Die Datei enthält keine Materialien.</translation>
    </message>
    <message>
        <source>It is too large for this computer.</source>
        <translation>Die Datei ist zu groß für diesen Rechner.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be imported.</source>
        <translation>„%1“ konnte nicht importiert werden.</translation>
    </message>
    <message>
        <source>It is damaged, or not what its name says. (%1)</source>
        <translation>Die Datei ist beschädigt oder nicht das, was ihr Name sagt. (%1)</translation>
    </message>
    <message>
        <source>A part of this program is missing: it has to be installed anew.</source>
        <translation>Ein Teil dieses Programms fehlt: Es muss neu installiert werden.</translation>
    </message>
    <message>
        <source>It takes too long to read.</source>
        <translation>Das Lesen der Datei dauert zu lange.</translation>
    </message>
    <message>
        <source>Of &quot;%1&quot;, &quot;%2&quot; could not be saved.</source>
        <translation>Aus „%1“ konnte „%2“ nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Nothing of it could be saved.</source>
        <translation>Nichts daraus konnte gespeichert werden.</translation>
    </message>
    <message>
        <source>It would lie outside of the library.</source>
        <translation>Es läge außerhalb der Bibliothek.</translation>
    </message>
</context>
<context>
    <name>KeptVersion</name>
    <message>
        <source>&quot;%1&quot; was left as it is: the disk is too full to keep its present version.</source>
        <translation>„%1“ blieb, wie es ist: Die Platte ist zu voll, um den jetzigen Stand aufzuheben.</translation>
    </message>
    <message>
        <source>The former version of &quot;%1&quot; is not there any more: the deleted assets were removed for good.</source>
        <translation>Der frühere Stand von „%1“ ist nicht mehr da: Die gelöschten Assets wurden endgültig entfernt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be put back: something else is at its place now.</source>
        <translation>„%1“ konnte nicht zurückgelegt werden: An seinem Platz liegt jetzt etwas anderes.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was left as it is: its present version could not be kept.</source>
        <translation>„%1“ wurde gelassen, wie es ist: Die jetzige Fassung konnte nicht aufgehoben werden.</translation>
    </message>
</context>
<context>
    <name>LibraryActions</name>
    <message>
        <source>&quot;%1&quot; could not be put back: something else is at its place now.</source>
        <translation>„%1“ konnte nicht zurückgelegt werden: An seinem Platz liegt jetzt etwas anderes.</translation>
    </message>
    <message>
        <source>An asset was not renamed: it is not in an open library any more.</source>
        <translation>Ein Asset wurde nicht umbenannt: Es liegt in keiner geöffneten Bibliothek mehr.</translation>
    </message>
    <message>
        <source>A folder cannot be called &quot;%1&quot;.</source>
        <translation>Ein Ordner kann nicht „%1“ heißen.</translation>
    </message>
    <message>
        <source>There is something called &quot;%1&quot; already.</source>
        <translation>„%1“ gibt es bereits.</translation>
    </message>
    <message>
        <source>Rename of &quot;%1&quot;</source>
        <translation>Umbenennen von „%1“</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no folder for assets.</source>
        <translation>„%1“ ist kein Ordner für Assets.</translation>
    </message>
    <message numerus="yes">
        <source>Move of %n asset(s)</source>
        <translation>
            <numerusform>Verschieben von %n Asset</numerusform>
            <numerusform>Verschieben von %n Assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Move of %n folder(s)</source>
        <translation>
            <numerusform>Verschieben von %n Ordner</numerusform>
            <numerusform>Verschieben von %n Ordnern</numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be moved into itself.</source>
        <translation>„%1“ kann nicht in sich selbst verschoben werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not moved.</source>
        <translation>„%1“ wurde nicht verschoben.</translation>
    </message>
    <message numerus="yes">
        <source>Deletion of %n asset(s)</source>
        <translation>
            <numerusform>Löschen von %n Asset</numerusform>
            <numerusform>Löschen von %n Assets</numerusform>
        </translation>
    </message>
    <message>
        <source>Deletion of &quot;%1&quot;</source>
        <translation>Löschen von „%1“</translation>
    </message>
    <message>
        <source>Merge of &quot;%1&quot;</source>
        <translation>Zusammenführen von „%1“</translation>
    </message>
    <message>
        <source>May its folder be written?</source>
        <translation>Darf in den Ordner geschrieben werden?</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be renamed.</source>
        <translation>„%1“ konnte nicht umbenannt werden.</translation>
    </message>
    <message>
        <source>No folder could be made in &quot;%1&quot;.</source>
        <translation>In „%1“ konnte kein Ordner angelegt werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was left: there is something in it, or it may not be removed.</source>
        <translation>„%1“ blieb: Es liegt etwas darin, oder der Ordner darf nicht entfernt werden.</translation>
    </message>
    <message>
        <source>Restoring of &quot;%1&quot;</source>
        <translation>Zurücklegen von „%1“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was left as it is: its library is not open any more.</source>
        <translation>„%1“ blieb, wie es ist: Die Bibliothek ist nicht mehr geöffnet.</translation>
    </message>
    <message numerus="yes">
        <source>Deletion of %n folder(s)</source>
        <translation>
            <numerusform>Löschen von %n Ordner</numerusform>
            <numerusform>Löschen von %n Ordnern</numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be put back: &quot;%2&quot; cannot be made.</source>
        <translation>„%1“ konnte nicht zurückgelegt werden: „%2“ lässt sich nicht anlegen.</translation>
    </message>
    <message numerus="yes">
        <source>Restoring of %n deleted thing(s)</source>
        <translation>
            <numerusform>Wiederherstellen von %n gelöschten Eintrag</numerusform>
            <numerusform>Wiederherstellen von %n gelöschten Einträgen</numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;%1&quot; was left as it is: it is not where it was saved any more.</source>
        <translation>„%1“ bleibt, wie es ist: Es liegt nicht mehr dort, wo es gespeichert wurde.</translation>
    </message>
</context>
<context>
    <name>LibraryScan</name>
    <message>
        <source>The folder &quot;%1&quot; is not there. Is its drive connected?</source>
        <translation>Der Ordner „%1“ ist nicht da. Ist das Laufwerk angeschlossen?</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; may not be read by you.</source>
        <translation>Für den Ordner „%1“ fehlt die Leseberechtigung.</translation>
    </message>
    <message>
        <source>its description may not be read by you.</source>
        <translation>Es fehlt das Recht, seine Beschreibung zu lesen.</translation>
    </message>
    <message>
        <source>its description is damaged.</source>
        <translation>Seine Beschreibung ist beschädigt.</translation>
    </message>
    <message>
        <source>its description is not that of an asset.</source>
        <translation>Seine Beschreibung ist nicht die eines Assets.</translation>
    </message>
    <message>
        <source>The asset in &quot;%1&quot; cannot be read: %2</source>
        <translation>Das Asset in „%1“ ist nicht lesbar: %2</translation>
    </message>
</context>
<context>
    <name>LibrarySide</name>
    <message>
        <source>Its file is missing: it cannot be loaded.</source>
        <translation>Die Datei fehlt: Das Asset kann nicht geladen werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; and the open library &quot;%2&quot; lie in each other.</source>
        <translation>„%1“ und die geöffnete Bibliothek „%2“ liegen ineinander.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; does not answer. Is its drive or network connected?</source>
        <translation>Der Ordner „%1“ antwortet nicht. Ist das Laufwerk angeschlossen oder das Netzwerk verbunden?</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; is empty now. Is its drive connected?</source>
        <translation>Der Ordner „%1“ ist jetzt leer. Ist das Laufwerk angeschlossen?</translation>
    </message>
</context>
<context>
    <name>MainMenus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Add &amp;library...</source>
        <translation>&amp;Bibliothek hinzufügen …</translation>
    </message>
    <message>
        <source>&amp;Import files...</source>
        <translation>Dateien &amp;importieren …</translation>
    </message>
    <message>
        <source>New &amp;folder</source>
        <translation>Neuer &amp;Ordner</translation>
    </message>
    <message>
        <source>&amp;Read libraries again</source>
        <translation>Bibliotheken neu &amp;einlesen</translation>
    </message>
    <message>
        <source>Dele&amp;ted assets...</source>
        <translation>&amp;Gelöschte Assets …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>Been&amp;den</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Wiederholen: %1</translation>
    </message>
    <message>
        <source>&amp;Asset</source>
        <translation>&amp;Asset</translation>
    </message>
    <message>
        <source>&amp;Load into the scene</source>
        <translation>In die Szene &amp;laden</translation>
    </message>
    <message>
        <source>Save the scene&apos;s copy &amp;over it...</source>
        <translation>Mit der Kopie aus der Szene über&amp;schreiben …</translation>
    </message>
    <message>
        <source>&amp;Favourite</source>
        <translation>&amp;Favorit</translation>
    </message>
    <message>
        <source>Render &amp;previews anew</source>
        <translation>&amp;Vorschauen neu rendern</translation>
    </message>
    <message>
        <source>&amp;Move to folder...</source>
        <translation>In Ordner v&amp;erschieben …</translation>
    </message>
    <message>
        <source>Save selected ob&amp;jects as assets</source>
        <translation>Gewählte &amp;Objekte als Assets sichern</translation>
    </message>
    <message>
        <source>Save selected ma&amp;terials as assets</source>
        <translation>Gewählte Ma&amp;terialien als Assets sichern</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>A&amp;nsicht</translation>
    </message>
    <message>
        <source>&amp;Tiles</source>
        <translation>&amp;Kacheln</translation>
    </message>
    <message>
        <source>&amp;List</source>
        <translation>&amp;Liste</translation>
    </message>
    <message>
        <source>Lar&amp;ger tiles</source>
        <translation>&amp;Größere Kacheln</translation>
    </message>
    <message>
        <source>S&amp;maller tiles</source>
        <translation>Kleinere Ka&amp;cheln</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Tour</source>
        <translation>&amp;Rundgang</translation>
    </message>
    <message>
        <source>&amp;About Asset Manager</source>
        <translation>&amp;Über Asset Manager</translation>
    </message>
    <message>
        <source>About Asset Manager</source>
        <translation>Über Asset Manager</translation>
    </message>
    <message>
        <source>Asset Manager %1

Keeps libraries of materials, environments, geometry and sceneplates.</source>
        <translation>Asset Manager %1

Verwaltet Bibliotheken von Materialien, Umgebungen, Geometrie und Plates.</translation>
    </message>
    <message>
        <source>&amp;Close library</source>
        <translation>Bibliothek s&amp;chließen</translation>
    </message>
    <message>
        <source>Puts deleted assets and folders back, or removes them for good.</source>
        <translation>Legt gelöschte Assets und Ordner zurück oder entfernt sie endgültig.</translation>
    </message>
    <message>
        <source>Load &amp;below the selected object</source>
        <translation>&amp;Unter das ausgewählte Objekt laden</translation>
    </message>
    <message>
        <source>Replaces the previews that are there, also those that were painted by hand. Undo brings them back.</source>
        <translation>Ersetzt die vorhandenen Vorschauen, auch von Hand gemalte. „Rückgängig“ bringt sie zurück.</translation>
    </message>
    <message>
        <source>Its files stay as they are. What was done in it can be undone only while it is open.</source>
        <translation>Die Dateien bleiben, wie sie sind. Was in der Bibliothek getan wurde, lässt sich nur rückgängig machen, solange sie offen ist.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Libraries</source>
        <translation>Bibliotheken</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Reading the libraries...</source>
        <translation>Bibliotheken werden gelesen …</translation>
    </message>
    <message>
        <source>%1: %2 of %3</source>
        <translation>%1: %2 von %3</translation>
    </message>
    <message>
        <source>Add library</source>
        <translation>Bibliothek hinzufügen</translation>
    </message>
    <message numerus="yes">
        <source>%n asset(s)</source>
        <translation>
            <numerusform>%n Asset</numerusform>
            <numerusform>%n Assets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n selected</source>
        <translation>
            <numerusform>, %n ausgewählt</numerusform>
            <numerusform>, %n ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>No library is open.
The File menu adds a folder as a library.</source>
        <translation>Keine Bibliothek ist geöffnet.
Das Menü Datei fügt einen Ordner als Bibliothek hinzu.</translation>
    </message>
    <message>
        <source>It is read as soon as that is possible.</source>
        <translation>Sobald das möglich ist, wird sie gelesen.</translation>
    </message>
</context>
<context>
    <name>MaterialListModel</name>
    <message>
        <source>unnamed</source>
        <translation>unbenannt</translation>
    </message>
</context>
<context>
    <name>MaterialPanel</name>
    <message>
        <source>Materials</source>
        <translation>Materialien</translation>
    </message>
    <message>
        <source>Materials of the scene</source>
        <translation>Materialien der Szene</translation>
    </message>
    <message>
        <source>Drag a material asset here, or onto an object of the scene.</source>
        <translation>Ein Material-Asset hierher oder auf ein Objekt der Szene ziehen.</translation>
    </message>
    <message>
        <source>Select Users</source>
        <translation>Verwender auswählen</translation>
    </message>
    <message>
        <source>Selects the objects that have the selected materials</source>
        <translation>Wählt die Objekte aus, die die ausgewählten Materialien tragen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Assign to the Selected Objects</source>
        <translation>Den ausgewählten Objekten zuweisen</translation>
    </message>
    <message>
        <source>No object is selected that could take the material.</source>
        <translation>Es ist kein Objekt ausgewählt, das das Material bekommen könnte.</translation>
    </message>
</context>
<context>
    <name>NameStep</name>
    <message>
        <source>&quot;%1&quot; is no longer part of the scene.</source>
        <translation>„%1“ gehört nicht mehr zur Szene.</translation>
    </message>
</context>
<context>
    <name>NodeTreeModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Asset</source>
        <translation>Asset</translation>
    </message>
</context>
<context>
    <name>NodeTreePanel</name>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>Frame in View</source>
        <translation>In der Ansicht zeigen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppieren</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Move Out of Its Parent</source>
        <translation>Aus der Gruppe herausnehmen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Paste Below</source>
        <translation>Darunter einfügen</translation>
    </message>
</context>
<context>
    <name>NumberBox</name>
    <message>
        <source>several</source>
        <translation>mehrere</translation>
    </message>
</context>
<context>
    <name>PlacementStep</name>
    <message>
        <source>&quot;%1&quot; cannot go back to its place, because what it belonged to is gone.</source>
        <translation>„%1“ kann nicht an seinen Platz zurück, weil das, wozu es gehörte, nicht mehr da ist.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot become a part of itself.</source>
        <translation>„%1“ kann kein Teil von sich selbst werden.</translation>
    </message>
</context>
<context>
    <name>PlateModel</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Opacity: 0 is invisible, 100 hides what is behind</source>
        <translation>Deckkraft: 0 ist unsichtbar, 100 verdeckt alles dahinter</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>Deckkraft</translation>
    </message>
</context>
<context>
    <name>PlatePanel</name>
    <message>
        <source>Plates</source>
        <translation>Plates</translation>
    </message>
    <message>
        <source>Plates over and under the picture</source>
        <translation>Plates über und unter dem Bild</translation>
    </message>
    <message>
        <source>Drag a plate asset here to lay it over or under the picture.</source>
        <translation>Ein Plate-Asset hierher ziehen, um es über oder unter das Bild zu legen.</translation>
    </message>
    <message>
        <source>Drag plates to change their order, or move them by Alt and the arrow keys</source>
        <translation>Die Reihenfolge der Plates ändert sich durch Ziehen oder mit Alt und den Pfeiltasten</translation>
    </message>
    <message>
        <source>Change Opacity</source>
        <translation>Deckkraft ändern</translation>
    </message>
</context>
<context>
    <name>PropertyPanel</name>
    <message>
        <source>several</source>
        <translation>mehrere</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Select an object or a material to see its properties here.</source>
        <translation>Ein Objekt oder Material auswählen, um seine Eigenschaften hier zu sehen.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Asset</source>
        <translation>Asset</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Which material is edited</source>
        <translation>Welches Material bearbeitet wird</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>All %1 materials</source>
        <translation>Alle %1 Materialien</translation>
    </message>
    <message>
        <source>Material: %1</source>
        <translation>Material: %1</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>%1 objects</source>
        <translation>%1 Objekte</translation>
    </message>
</context>
<context>
    <name>PythonInterpreter</name>
    <message>
        <source>Python cannot be started: %1</source>
        <translation>Python lässt sich nicht starten: %1</translation>
    </message>
</context>
<context>
    <name>SampleLibrary</name>
    <message>
        <source>The sample library could not be copied to &quot;%1&quot;: %2.</source>
        <translation>Die Beispielbibliothek konnte nicht nach „%1“ kopiert werden: %2.</translation>
    </message>
</context>
<context>
    <name>ScanProgress</name>
    <message>
        <source>Reading libraries</source>
        <translation>Bibliotheken werden gelesen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Stop reading; what was found stays</source>
        <translation>Lesen anhalten; was gefunden wurde, bleibt</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Liest …</translation>
    </message>
    <message numerus="yes">
        <source>Reading &quot;%1&quot;: %n asset(s)</source>
        <translation>
            <numerusform>„%1“ wird gelesen: %n Asset</numerusform>
            <numerusform>„%1“ wird gelesen: %n Assets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SceneActions</name>
    <message>
        <source>An asset was not loaded, because its library is not open or it was deleted.</source>
        <translation>Ein Asset wurde nicht geladen, weil seine Bibliothek nicht geöffnet ist oder es gelöscht wurde.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not loaded. Its files may be missing or damaged.</source>
        <translation>„%1“ wurde nicht geladen. Vielleicht fehlen Dateien oder sind beschädigt.</translation>
    </message>
    <message>
        <source>Load &quot;%1&quot;</source>
        <translation>„%1“ laden</translation>
    </message>
    <message>
        <source>Load %1 assets</source>
        <translation>%1 Assets laden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; belongs to every scene and stays where it is.</source>
        <translation>„%1“ gehört zu jeder Szene und bleibt, wo es ist.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is an environment and stays among the environments.</source>
        <translation>„%1“ ist eine Umgebung und bleibt bei den Umgebungen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be moved between the scene and the plates.</source>
        <translation>„%1“ kann nicht zwischen Szene und Plates verschoben werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot become a part of itself.</source>
        <translation>„%1“ kann kein Teil von sich selbst werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is an environment and takes no material. Load an environment asset instead.</source>
        <translation>„%1“ ist eine Umgebung und nimmt kein Material an. Stattdessen ein Umgebungs-Asset laden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has nothing that a material can be put on.</source>
        <translation>„%1“ enthält nichts, was ein Material tragen kann.</translation>
    </message>
    <message>
        <source>The new material of &quot;%1&quot; is not seen, because &quot;%2&quot; covers it with another.</source>
        <translation>Das neue Material von „%1“ ist nicht zu sehen, weil „%2“ es mit einem anderen überdeckt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lights the scene and cannot be put on an object. Drag it to the environments.</source>
        <translation>„%1“ beleuchtet die Szene und kann keinem Objekt zugewiesen werden. Besser zu den Umgebungen ziehen.</translation>
    </message>
    <message>
        <source>Assign &quot;%1&quot;</source>
        <translation>„%1“ zuweisen</translation>
    </message>
    <message>
        <source>Switch to &quot;%1&quot;</source>
        <translation>Zu „%1“ wechseln</translation>
    </message>
    <message>
        <source>Delete &quot;%1&quot;</source>
        <translation>„%1“ löschen</translation>
    </message>
    <message>
        <source>Delete %1 objects</source>
        <translation>%1 Objekte löschen</translation>
    </message>
    <message>
        <source>A name has to have at least one letter or digit.</source>
        <translation>Ein Name braucht mindestens einen Buchstaben oder eine Ziffer.</translation>
    </message>
    <message>
        <source>Rename to &quot;%1&quot;</source>
        <translation>In „%1“ umbenennen</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Nothing can be moved into &quot;%1&quot;.</source>
        <translation>In „%1“ kann nichts verschoben werden.</translation>
    </message>
    <message>
        <source>Move &quot;%1&quot;</source>
        <translation>„%1“ verschieben</translation>
    </message>
    <message>
        <source>Move %1 objects</source>
        <translation>%1 Objekte verschieben</translation>
    </message>
    <message>
        <source>Group &quot;%1&quot;</source>
        <translation>„%1“ gruppieren</translation>
    </message>
    <message>
        <source>Group %1 objects</source>
        <translation>%1 Objekte gruppieren</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
</context>
<context>
    <name>SceneNodes</name>
    <message>
        <source>Empty node</source>
        <translation>Leerer Knoten</translation>
    </message>
    <message>
        <source>Geometry</source>
        <translation>Geometrie</translation>
    </message>
    <message>
        <source>Material group</source>
        <translation>Materialgruppe</translation>
    </message>
    <message>
        <source>Transform</source>
        <translation>Transformation</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>Umgebung</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Licht</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Switch</source>
        <translation>Umschalter</translation>
    </message>
    <message>
        <source>Front plate</source>
        <translation>Vordergrund-Plate</translation>
    </message>
    <message>
        <source>Back plate</source>
        <translation>Hintergrund-Plate</translation>
    </message>
    <message>
        <source>Material pool</source>
        <translation>Materialvorrat</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
</context>
<context>
    <name>SceneSide</name>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Scene tree</source>
        <translation>Szenenbaum</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Materials</source>
        <translation>Materialien</translation>
    </message>
    <message>
        <source>Environments</source>
        <translation>Umgebungen</translation>
    </message>
    <message>
        <source>Plates</source>
        <translation>Plates</translation>
    </message>
    <message>
        <source>The scene has no copy of these assets.</source>
        <translation>Die Szene hat keine Kopie dieser Assets.</translation>
    </message>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message>
        <source>The scene was changed. Save it before it is closed?</source>
        <translation>Die Szene wurde geändert. Vor dem Schließen speichern?</translation>
    </message>
    <message>
        <source>Open scene</source>
        <translation>Szene öffnen</translation>
    </message>
    <message>
        <source>Scenes (*.osb)</source>
        <translation>Szenen (*.osb)</translation>
    </message>
    <message>
        <source>Save scene</source>
        <translation>Szene speichern</translation>
    </message>
    <message>
        <source>unnamed scene</source>
        <translation>unbenannte Szene</translation>
    </message>
    <message>
        <source>%1[*] - Asset Manager</source>
        <translation>%1[*] – Asset Manager</translation>
    </message>
    <message>
        <source>&amp;New scene</source>
        <translation>&amp;Neue Szene</translation>
    </message>
    <message>
        <source>&amp;Open scene...</source>
        <translation>Szene &amp;öffnen …</translation>
    </message>
    <message>
        <source>&amp;Save scene</source>
        <translation>Szene &amp;speichern</translation>
    </message>
    <message>
        <source>Save scene &amp;as...</source>
        <translation>Szene speichern &amp;unter …</translation>
    </message>
    <message>
        <source>Show the &amp;selection</source>
        <translation>&amp;Auswahl zeigen</translation>
    </message>
    <message>
        <source>Show &amp;everything</source>
        <translation>All&amp;es zeigen</translation>
    </message>
    <message numerus="yes">
        <source>%n stored asset(s) will be replaced by what the scene has of them.</source>
        <translation>
            <numerusform>%n gespeichertes Asset wird durch das ersetzt, was die Szene davon hat.</numerusform>
            <numerusform>%n gespeicherte Assets werden durch das ersetzt, was die Szene davon hat.</numerusform>
        </translation>
    </message>
    <message>
        <source>No object is selected that something could be loaded below.</source>
        <translation>Es ist kein Objekt ausgewählt, unter das etwas geladen werden könnte.</translation>
    </message>
    <message>
        <source>Undo forgets what was done in the scene before.</source>
        <translation>„Rückgängig“ vergisst, was vorher in der Szene getan wurde.</translation>
    </message>
</context>
<context>
    <name>SceneStore</name>
    <message>
        <source>The scene could not be saved as &quot;%1&quot;: %2</source>
        <translation>Die Szene konnte nicht als „%1“ gespeichert werden: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be opened: %2</source>
        <translation>„%1“ konnte nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The scene could not be saved as &quot;%1&quot;.</source>
        <translation>Die Szene konnte nicht als „%1“ gespeichert werden.</translation>
    </message>
</context>
<context>
    <name>SceneTreePanel</name>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Objects of the scene</source>
        <translation>Objekte der Szene</translation>
    </message>
    <message>
        <source>Drag a geometry asset here to put it into the scene.</source>
        <translation>Ein Geometrie-Asset hierher ziehen, um es in die Szene zu stellen.</translation>
    </message>
</context>
<context>
    <name>SceneView</name>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>ScriptConsole</name>
    <message>
        <source>What Python printed</source>
        <translation>Ausgabe von Python</translation>
    </message>
    <message>
        <source>Python statements</source>
        <translation>Python-Anweisungen</translation>
    </message>
    <message>
        <source>import kx</source>
        <translation>import kx</translation>
    </message>
    <message>
        <source>&amp;Run file...</source>
        <translation>Datei &amp;ausführen …</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>Ends the running script; press again if it does not give in</source>
        <translation>Beendet das laufende Skript; nochmals drücken, wenn es nicht nachgibt</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Empties what was printed</source>
        <translation>Leert die Ausgabe</translation>
    </message>
    <message>
        <source>Run a script</source>
        <translation>Skript ausführen</translation>
    </message>
    <message>
        <source>Python scripts (*.py)</source>
        <translation>Python-Skripte (*.py)</translation>
    </message>
    <message>
        <source>Running %1</source>
        <translation>%1 läuft</translation>
    </message>
    <message>
        <source>Where a statement changes the scene, Undo forgets what was done in it before.</source>
        <translation>Wenn eine Anweisung die Szene ändert, vergisst „Rückgängig“, was vorher in ihr getan wurde.</translation>
    </message>
    <message>
        <source>What was done in the scene before cannot be undone any more: the script has changed it.</source>
        <translation>Was vorher in der Szene getan wurde, lässt sich nicht mehr rückgängig machen: Das Skript hat sie geändert.</translation>
    </message>
    <message>
        <source>Runs a Python file in the scene that is open. Where it changes the scene, Undo forgets what was done in it before.</source>
        <translation>Führt eine Python-Datei in der offenen Szene aus. Wenn sie die Szene ändert, vergisst „Rückgängig“, was vorher in ihr getan wurde.</translation>
    </message>
</context>
<context>
    <name>ScriptRunner</name>
    <message>
        <source>Another script is running.</source>
        <translation>Ein anderes Skript läuft.</translation>
    </message>
</context>
<context>
    <name>ScriptSide</name>
    <message>
        <source>Python</source>
        <translation>Python</translation>
    </message>
    <message>
        <source>&amp;Run Python file...</source>
        <translation>&amp;Python-Datei ausführen …</translation>
    </message>
    <message>
        <source>Python (this build comes without it)</source>
        <translation>Python (in dieser Fassung nicht enthalten)</translation>
    </message>
    <message>
        <source>Where it changes the scene, Undo forgets what was done in it before.</source>
        <translation>Wenn es die Szene ändert, vergisst „Rückgängig“, was vorher in ihr getan wurde.</translation>
    </message>
</context>
<context>
    <name>TagBar</name>
    <message>
        <source>Filter by tags</source>
        <translation>Nach Tags filtern</translation>
    </message>
    <message>
        <source>More tags</source>
        <translation>Mehr Tags</translation>
    </message>
    <message>
        <source>Show only assets with the tag &quot;%1&quot;</source>
        <translation>Nur Assets mit dem Tag „%1“ zeigen</translation>
    </message>
</context>
<context>
    <name>Tour</name>
    <message>
        <source>Tour of the program</source>
        <translation>Rundgang durch das Programm</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>These are your libraries and their folders. Drag assets or folders onto a folder to move them there, drag objects of the scene here to save them as assets, and drop files from outside to import them.</source>
        <translation>Das sind die Bibliotheken und ihre Ordner. Assets oder Ordner lassen sich durch Ziehen auf einen Ordner dorthin verschieben; Objekte der Szene werden hier zu Assets, und Dateien von außen werden importiert.</translation>
    </message>
    <message>
        <source>Here are the assets of the chosen folder. Search as you type, narrow down by tags, and change the size of the tiles with the slider. A mark on a tile tells how the asset stands to the scene; point at it to read why.</source>
        <translation>Hier sind die Assets des gewählten Ordners. Die Suche folgt jedem Buchstaben, Tags grenzen weiter ein, und der Regler ändert die Größe der Kacheln. Eine Markierung auf der Kachel sagt, wie das Asset zur Szene steht; beim Zeigen darauf erscheint der Grund.</translation>
    </message>
    <message>
        <source>This is the scene. Drag a material onto an object, or geometry, an environment or a plate into the picture. Drag with the mouse to look around.</source>
        <translation>Das ist die Szene. Ein Material wird auf ein Objekt gezogen; Geometrie, Umgebungen und Plates einfach ins Bild. Ziehen mit der Maus dreht die Ansicht.</translation>
    </message>
    <message>
        <source>The selected asset in detail: change its name and its tags here, of several at once too.</source>
        <translation>Das ausgewählte Asset im Detail: Hier lassen sich Name und Tags ändern, auch von mehreren zugleich.</translation>
    </message>
    <message>
        <source>Everything can be undone with Ctrl+Z, also what was deleted: it goes to the trash of its library first.</source>
        <translation>Alles lässt sich mit Strg+Z rückgängig machen, auch das Löschen: Gelöschtes kommt zuerst in den Papierkorb seiner Bibliothek.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
</context>
<context>
    <name>Trash</name>
    <message>
        <source>&quot;%1&quot; could not be deleted: the disk is full, and deleted assets are kept. Empty &quot;Deleted assets&quot;, or make room elsewhere.</source>
        <translation>„%1“ konnte nicht gelöscht werden: Der Datenträger ist voll, und Gelöschtes wird aufbewahrt. Platz entsteht, wenn „Gelöschte Assets“ geleert oder anderswo etwas entfernt wird.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be deleted: you may not write into its library.</source>
        <translation>„%1“ konnte nicht gelöscht werden: in seine Bibliothek darf nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be deleted.</source>
        <translation>„%1“ konnte nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was left as it is: its present version could not be kept.</source>
        <translation>„%1“ wurde gelassen, wie es ist: Die jetzige Fassung konnte nicht aufgehoben werden.</translation>
    </message>
</context>
<context>
    <name>TrashDialog</name>
    <message>
        <source>Deleted assets and folders</source>
        <translation>Gelöschte Assets und Ordner</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Was in</source>
        <translation>War in</translation>
    </message>
    <message>
        <source>Deleted on</source>
        <translation>Gelöscht am</translation>
    </message>
    <message>
        <source>Put &amp;back</source>
        <translation>&amp;Zurücklegen</translation>
    </message>
    <message>
        <source>&amp;Remove everything for good...</source>
        <translation>Alles &amp;endgültig entfernen …</translation>
    </message>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message numerus="yes">
        <source>%n deleted asset(s) and folder(s) will be removed from the disk for good.
This cannot be undone.</source>
        <translation>
            <numerusform>%n gelöschtes Element wird endgültig vom Datenträger entfernt.
Das lässt sich nicht rückgängig machen.</numerusform>
            <numerusform>%n gelöschte Assets und Ordner werden endgültig vom Datenträger entfernt.
Das lässt sich nicht rückgängig machen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Not everything could be removed. May the library be written?</source>
        <translation>Nicht alles konnte entfernt werden. Ist die Bibliothek beschreibbar?</translation>
    </message>
    <message>
        <source>Nothing was deleted.</source>
        <translation>Nichts wurde gelöscht.</translation>
    </message>
    <message>
        <source>Also removes the former versions that Undo would bring back.</source>
        <translation>Entfernt auch die früheren Fassungen, die „Rückgängig“ zurückbringen würde.</translation>
    </message>
    <message>
        <source>What Undo keeps of assets that were saved over, and of previews and tags that were changed, goes as well.</source>
        <translation>Auch was „Rückgängig“ von überschriebenen Assets und von geänderten Vorschauen und Tags aufbewahrt, geht verloren.</translation>
    </message>
</context>
<context>
    <name>WelcomeDialog</name>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>Asset Manager keeps materials, environments, geometry and sceneplates in folders that you choose, and brings them into scenes.</source>
        <translation>Asset Manager verwaltet Materialien, Umgebungen, Geometrie und Plates in frei gewählten Ordnern und bringt sie in Szenen.</translation>
    </message>
    <message>
        <source>Open the sample library</source>
        <translation>Beispielbibliothek öffnen</translation>
    </message>
    <message>
        <source>A few dozen designed materials and some models to try things with.</source>
        <translation>Einige Dutzend gestaltete Materialien und ein paar Modelle zum Ausprobieren.</translation>
    </message>
    <message>
        <source>Choose a folder of your own</source>
        <translation>Eigenen Ordner wählen</translation>
    </message>
    <message>
        <source>One that holds assets already, or an empty one to fill.</source>
        <translation>Einer, der schon Assets enthält, oder ein leerer zum Füllen.</translation>
    </message>
    <message>
        <source>Show me around afterwards</source>
        <translation>Danach einen Rundgang zeigen</translation>
    </message>
</context>
<context>
    <name>kxAssetCategory</name>
    <message>
        <source>Materials</source>
        <translation>Materialien</translation>
    </message>
    <message>
        <source>Environments</source>
        <translation>Umgebungen</translation>
    </message>
    <message>
        <source>Geometries</source>
        <translation>Geometrien</translation>
    </message>
    <message>
        <source>Sceneplates</source>
        <translation>Plates</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>Umgebung</translation>
    </message>
    <message>
        <source>Geometry</source>
        <translation>Geometrie</translation>
    </message>
    <message>
        <source>Sceneplate</source>
        <translation>Plate</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Modified on</source>
        <translation>Geändert am</translation>
    </message>
    <message>
        <source>Storage Location</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
</context>
<context>
    <name>kxAssetManagerModule</name>
    <message>
        <source>An object that is no asset was not saved.</source>
        <translation>Ein Objekt, das kein Asset ist, wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not saved: its asset is not in an open library.</source>
        <translation>„%1“ wurde nicht gespeichert: Das Asset liegt in keiner geöffneten Bibliothek.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be saved in &quot;%2&quot;.</source>
        <translation>„%1“ konnte nicht in „%2“ gespeichert werden.</translation>
    </message>
    <message>
        <source>%1: not in an open library; last seen in %2</source>
        <translation>%1: in keiner geöffneten Bibliothek; zuletzt gesehen in %2</translation>
    </message>
    <message>
        <source>%1: the stored asset was changed</source>
        <translation>%1: Das gespeicherte Asset wurde geändert</translation>
    </message>
    <message>
        <source>%1: edited in the scene</source>
        <translation>%1: in der Szene bearbeitet</translation>
    </message>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message>
        <source>All assets are as they are stored.</source>
        <translation>Alle Assets sind so, wie sie gespeichert sind.</translation>
    </message>
</context>
<context>
    <name>kxAssetsServiceImpl</name>
    <message>
        <source>Could not find asset.
Last known storage location: %1.</source>
        <translation>Asset nicht gefunden.
Letzter bekannter Speicherort: %1.</translation>
    </message>
</context>
<context>
    <name>kxEnvironmentMaterialAssetItem</name>
    <message>
        <source>Environment Material</source>
        <translation>Umgebungsmaterial</translation>
    </message>
</context>
<context>
    <name>kxEnvironmentNodeAssetItem</name>
    <message>
        <source>Environment Node</source>
        <translation>Umgebungsknoten</translation>
    </message>
</context>
<context>
    <name>kxGeometryAssetItem</name>
    <message>
        <source>Rendering asset preview image ...</source>
        <translation>Vorschaubild des Assets wird gerendert …</translation>
    </message>
    <message>
        <source>Save Geometry Asset</source>
        <translation>Geometrie-Asset speichern</translation>
    </message>
    <message>
        <source>You are attempting to add an asset containing references. References are not supported in assets. Continuing will add the asset to the Asset Manager, removing all references.  This action is not undoable. Select Ok to continue.</source>
        <translation>Das Asset enthält Referenzen, die in Assets nicht unterstützt werden. Beim Fortfahren wird das Asset dem Asset Manager hinzugefügt und alle Referenzen werden entfernt. Das lässt sich nicht rückgängig machen. Mit OK fortfahren.</translation>
    </message>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message>
        <source>The node to be saved does not have a valid Asset Root node.
Create one?</source>
        <translation>Der zu speichernde Knoten hat keinen gültigen Asset-Wurzelknoten.
Einen anlegen?</translation>
    </message>
</context>
<context>
    <name>kxGeometrySceneplateCommon</name>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
</context>
<context>
    <name>kxLocalUrlManager</name>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message>
        <source>The target already contains a folder named &apos;%1&apos;.
Merge folders?</source>
        <translation>Das Ziel enthält bereits einen Ordner namens „%1“.
Ordner zusammenführen?</translation>
    </message>
</context>
<context>
    <name>kxMaterials</name>
    <message>
        <source>Multi Material</source>
        <translation>Multi-Material</translation>
    </message>
    <message>
        <source>Multi-Pass Material</source>
        <translation>Multi-Pass-Material</translation>
    </message>
    <message>
        <source>Switch Material</source>
        <translation>Umschaltmaterial</translation>
    </message>
    <message>
        <source>BRDF Material</source>
        <translation>BRDF-Material</translation>
    </message>
    <message>
        <source>Environment Switch</source>
        <translation>Umgebungsumschalter</translation>
    </message>
    <message>
        <source>Sky Environment</source>
        <translation>Himmelsumgebung</translation>
    </message>
    <message>
        <source>Sphere Environment</source>
        <translation>Kugelumgebung</translation>
    </message>
    <message>
        <source>Uber Material</source>
        <translation>Uber-Material</translation>
    </message>
</context>
<context>
    <name>kxMultipleEnvironmentsDialog</name>
    <message>
        <source>Asset Manager</source>
        <translation>Asset Manager</translation>
    </message>
    <message>
        <source>The loaded Environment Asset contains multiple environment materials.</source>
        <translation>Das geladene Umgebungs-Asset enthält mehrere Umgebungsmaterialien.</translation>
    </message>
    <message>
        <source>Please select the environment material that should be added to the Default Environment Switch in the scene:</source>
        <translation>Umgebungsmaterial wählen, das dem Standard-Umgebungsumschalter der Szene hinzugefügt werden soll:</translation>
    </message>
</context>
<context>
    <name>kxSceneplateAssetItem</name>
    <message>
        <source>Frontplate</source>
        <translation>Vordergrund-Plate</translation>
    </message>
    <message>
        <source>Backplate</source>
        <translation>Hintergrund-Plate</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Switch</source>
        <translation>Umschalter</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>kxViewport</name>
    <message>
        <source>Viewport</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Shows the scene. Arrow keys turn the camera around its target, plus and minus zoom, F frames the selection and Home everything.</source>
        <translation>Zeigt die Szene. Pfeiltasten drehen die Kamera um ihr Ziel, Plus und Minus zoomen, F zeigt die Auswahl und Pos1 alles.</translation>
    </message>
    <message>
        <source>Isolated</source>
        <translation>Isoliert</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Keeps libraries of assets for 3D scenes.</source>
        <translation>Verwaltet Bibliotheken von Assets für 3D-Szenen.</translation>
    </message>
    <message>
        <source>Write a picture of the window and end.</source>
        <translation>Bild des Fensters schreiben und beenden.</translation>
    </message>
    <message>
        <source>Folders with assets, and a scene to open</source>
        <translation>Ordner mit Assets und eine Szene zum Öffnen</translation>
    </message>
    <message>
        <source>Speak this language: de or en.</source>
        <translation>Diese Sprache sprechen: de oder en.</translation>
    </message>
    <message>
        <source>Be light or dark, whatever the desktop is.</source>
        <translation>Hell oder dunkel sein, wie auch immer der Desktop ist.</translation>
    </message>
    <message>
        <source>For the picture: the name of an asset to select.</source>
        <translation>Für das Bild: Name eines Assets, das ausgewählt wird.</translation>
    </message>
    <message>
        <source>Run a Python file once the libraries are read, and end with its exit code. What follows -- is in its sys.argv.</source>
        <translation>Nach dem Lesen der Bibliotheken eine Python-Datei ausführen und mit ihrem Exit-Code enden. Was auf -- folgt, steht in ihrem sys.argv.</translation>
    </message>
    <message>
        <source>Stay when the script has ended.</source>
        <translation>Nach dem Ende des Skripts geöffnet bleiben.</translation>
    </message>
    <message>
        <source>For the picture: tiles, list, the tour, or one panel or dialog alone (%1).</source>
        <translation>Für das Bild: tiles, list, tour oder nur ein Bereich oder Dialog (%1).</translation>
    </message>
</context>
</TS>
