<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>zelvo</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 % of film data</source>
        <translation>%1 % der Filmdaten</translation>
    </message>
    <message>
        <source>%1 % – %2</source>
        <translation>%1 % – %2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 %2; it might also be %3</source>
        <translation>%1 %2; es könnte auch %3 sein</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>%1 are free, about %2 are needed</source>
        <translation>%1 sind frei, etwa %2 werden benötigt</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 cannot hold a repaired film until you save it, so nothing was changed. The system says: %2.</source>
        <translation>%1 kann einen reparierten Film nicht aufnehmen, bis Sie ihn speichern; daher wurde nichts geändert. Das System meldet: %2.</translation>
    </message>
    <message>
        <source>%1 could not be read or written.</source>
        <translation>%1 konnte nicht gelesen oder geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 is not a folder that can be written to.</source>
        <translation>%1 ist kein Ordner, in den geschrieben werden kann.</translation>
    </message>
    <message>
        <source>%1 is not a folder.</source>
        <translation>%1 ist kein Ordner.</translation>
    </message>
    <message>
        <source>%1 is not there any more.</source>
        <translation>%1 ist nicht mehr da.</translation>
    </message>
    <message>
        <source>%1 kB</source>
        <translation>%1 kB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 Nothing was changed in your file, and it is still chosen: you can press Repair again.</source>
        <translation>%1 An Ihrer Datei wurde nichts geändert, und sie ist noch ausgewählt: Sie können noch einmal „Reparieren“ drücken.</translation>
    </message>
    <message>
        <source>%1 Nothing was changed in your file.</source>
        <translation>%1 An Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>%1 Nothing was saved, and the repaired file is still there: you can press Save again.</source>
        <translation>%1 Es wurde nichts gespeichert, und die reparierte Datei ist noch da: Sie können noch einmal „Speichern“ drücken.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 of %2 copied</source>
        <translation>%1 von %2 kopiert</translation>
    </message>
    <message>
        <source>%1 of its pictures and %2 of its sound are lost or hurt, the rest is there, in step</source>
        <translation>%1 seiner Bilder und %2 seines Tons sind verloren oder fehlerhaft, der Rest ist da und läuft synchron</translation>
    </message>
    <message>
        <source>%1 of its pictures are lost or hurt, all of its sound is there, in step</source>
        <translation>%1 seiner Bilder sind verloren oder fehlerhaft, der ganze Ton ist da und läuft synchron</translation>
    </message>
    <message>
        <source>%1 of its pictures are lost or hurt, the rest is there, in step</source>
        <translation>%1 seiner Bilder sind verloren oder fehlerhaft, der Rest ist da und läuft synchron</translation>
    </message>
    <message>
        <source>%1 of its sound is lost or hurt, all of its pictures are there, in step</source>
        <translation>%1 seines Tons sind verloren oder fehlerhaft, alle Bilder sind da und laufen synchron</translation>
    </message>
    <message>
        <source>%1 of its sound is lost or hurt, the rest is there, in step</source>
        <translation>%1 seines Tons sind verloren oder fehlerhaft, der Rest ist da und läuft synchron</translation>
    </message>
    <message>
        <source>%1 of the repaired file are no longer there.</source>
        <translation>%1 der reparierten Datei sind nicht mehr da.</translation>
    </message>
    <message>
        <source>%1 of the repaired file could not be read: %2.</source>
        <translation>%1 der reparierten Datei konnten nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>%1 or %2</source>
        <translation>%1 oder %2</translation>
    </message>
    <message>
        <source>%1 Please go back with Home and repair the film again.</source>
        <translation>%1 Bitte gehen Sie mit „Startseite“ zurück und reparieren Sie den Film noch einmal.</translation>
    </message>
    <message>
        <source>%1 Please save again, to another place.</source>
        <translation>%1 Bitte speichern Sie noch einmal, an einem anderen Ort.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation>%1 TB</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, folder</source>
        <translation>%1, Ordner</translation>
    </message>
    <message>
        <source>%1. %2 are free in %3, and the repaired file takes %4.</source>
        <translation>%1. In %3 sind %2 frei, und die reparierte Datei braucht %4.</translation>
    </message>
    <message>
        <source>%1. %2 are free in %3.</source>
        <translation>%1. In %3 sind %2 frei.</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1: %2 (%3)</translation>
    </message>
    <message>
        <source>%1: %2; %3</source>
        <translation>%1: %2; %3</translation>
    </message>
    <message>
        <source>%1: as it was</source>
        <translation>%1: wie zuvor</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s)</source>
        <translation><numerusform>%n Byte</numerusform><numerusform>%n Bytes</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s) could not be read; zeros stand in their place</source>
        <translation><numerusform>%n Byte konnte nicht gelesen werden; an seiner Stelle steht eine Null</numerusform><numerusform>%n Bytes konnten nicht gelesen werden; an ihrer Stelle stehen Nullen</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s) of the damaged file could not be read, the first at byte %1. What lies there is missing from the repaired film.</source>
        <translation><numerusform>%n Byte der beschädigten Datei konnte nicht gelesen werden, und zwar Byte %1. Was dort liegt, fehlt im reparierten Film.</numerusform><numerusform>%n Bytes der beschädigten Datei konnten nicht gelesen werden, das erste davon ist Byte %1. Was dort liegt, fehlt im reparierten Film.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s)</source>
        <translation><numerusform>%n Block</numerusform><numerusform>%n Blöcke</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) hurt</source>
        <translation><numerusform>%n Block fehlerhaft</numerusform><numerusform>%n Blöcke fehlerhaft</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) lost</source>
        <translation><numerusform>%n Block verloren</numerusform><numerusform>%n Blöcke verloren</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) more than are kept of a film of this size</source>
        <translation><numerusform>%n Block mehr, als von einem Film dieser Größe behalten wird</numerusform><numerusform>%n Blöcke mehr, als von einem Film dieser Größe behalten werden</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n cut short</source>
        <translation><numerusform>%n gekürzt</numerusform><numerusform>%n gekürzt</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n damaged</source>
        <translation><numerusform>%n beschädigt</numerusform><numerusform>%n beschädigt</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n damaged place(s). Point at one to see what happened there.</source>
        <translation><numerusform>%n beschädigte Stelle. Zeigen Sie darauf, um mehr zu erfahren.</numerusform><numerusform>%n beschädigte Stellen. Zeigen Sie auf eine, um mehr zu erfahren.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n film(s) chosen</source>
        <translation><numerusform>%n Film ausgewählt</numerusform><numerusform>%n Filme ausgewählt</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n film(s) repaired, in %1.</source>
        <translation><numerusform>%n Film repariert, in %1.</numerusform><numerusform>%n Filme repariert, in %1.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n lost</source>
        <translation><numerusform>%n verloren</numerusform><numerusform>%n verloren</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n mended</source>
        <translation><numerusform>%n in Ordnung gebracht</numerusform><numerusform>%n in Ordnung gebracht</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n more are told in the report.</source>
        <translation><numerusform>%n weitere steht im Bericht.</numerusform><numerusform>%n weitere stehen im Bericht.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n more here</source>
        <translation><numerusform>%n weitere Stelle hier</numerusform><numerusform>%n weitere Stellen hier</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s)</source>
        <translation><numerusform>%n Bild</numerusform><numerusform>%n Bilder</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s) hurt</source>
        <translation><numerusform>%n Bild fehlerhaft</numerusform><numerusform>%n Bilder fehlerhaft</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s) lost</source>
        <translation><numerusform>%n Bild verloren</numerusform><numerusform>%n Bilder verloren</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s)</source>
        <translation><numerusform>%n Stück</numerusform><numerusform>%n Stücke</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n sound chunk(s) hurt</source>
        <translation><numerusform>%n Tonblock fehlerhaft</numerusform><numerusform>%n Tonblöcke fehlerhaft</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n sound chunk(s) lost</source>
        <translation><numerusform>%n Tonblock verloren</numerusform><numerusform>%n Tonblöcke verloren</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n stream(s) of it cannot be recognised and are left out</source>
        <translation><numerusform>%n Spur ist nicht zu erkennen und wird ausgelassen</numerusform><numerusform>%n Spuren sind nicht zu erkennen und werden ausgelassen</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n stream(s) whose header is lost: nothing tells what they hold</source>
        <translation><numerusform>%n Spur, deren Kopf verloren ist: Nichts sagt, was sie enthält</numerusform><numerusform>%n Spuren, deren Kopf verloren ist: Nichts sagt, was sie enthalten</numerusform></translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message>
        <source>1 damaged place. Point at it to see what happened there.</source>
        <translation>1 beschädigte Stelle. Zeigen Sie darauf, um mehr zu erfahren.</translation>
    </message>
    <message>
        <source>1 MiB is 1,048,576 bytes</source>
        <translation>1 MiB sind 1.048.576 Bytes</translation>
    </message>
    <message>
        <source>1 stream of it cannot be recognised and is left out</source>
        <translation>1 Spur ist nicht zu erkennen und wird ausgelassen</translation>
    </message>
    <message>
        <source>A deep repair may bring back more of this film.</source>
        <translation>Eine Tiefenreparatur bringt vielleicht mehr von diesem Film zurück.</translation>
    </message>
    <message>
        <source>A deep repair may still bring %1 back.</source>
        <translation>Eine Tiefenreparatur bringt %1 vielleicht doch noch zurück.</translation>
    </message>
    <message>
        <source>a few seconds left</source>
        <translation>noch wenige Sekunden</translation>
    </message>
    <message>
        <source>A file of that name is there already. Please choose another name.</source>
        <translation>Eine Datei dieses Namens gibt es dort schon. Bitte wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>A film is being repaired. Another one can be dropped on the first page.</source>
        <translation>Ein Film wird gerade repariert. Einen weiteren können Sie auf der ersten Seite ablegen.</translation>
    </message>
    <message>
        <source>A folder of that name is there already. Please choose another name.</source>
        <translation>Einen Ordner dieses Namens gibt es dort schon. Bitte wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>A name cannot hold a slash (/).</source>
        <translation>Ein Name darf keinen Schrägstrich (/) enthalten.</translation>
    </message>
    <message>
        <source>a part of it is lost or hurt, the rest is there, in step</source>
        <translation>ein Teil davon ist verloren oder fehlerhaft, der Rest ist da und läuft synchron</translation>
    </message>
    <message>
        <source>A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The system says: %2.</source>
        <translation>Ein reparierter Film liegt in einem Arbeitsordner, bis Sie ihn speichern, und keiner ist brauchbar. Zuletzt versucht wurde %1. Das System meldet: %2.</translation>
    </message>
    <message>
        <source>A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The system says: %2. To repair this film, %3. Nothing was started, and nothing was changed in your file.</source>
        <translation>Ein reparierter Film liegt in einem Arbeitsordner, bis Sie ihn speichern, und keiner ist brauchbar. Zuletzt versucht wurde %1. Das System meldet: %2. Für diesen Film gilt: %3. Es wurde nichts begonnen, und an Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>about %1 are needed</source>
        <translation>etwa %1 werden benötigt</translation>
    </message>
    <message>
        <source>about %1 left</source>
        <translation>noch etwa %1</translation>
    </message>
    <message>
        <source>about %1 minutes left</source>
        <translation>noch etwa %1 Minuten</translation>
    </message>
    <message>
        <source>about %1 seconds left</source>
        <translation>noch etwa %1 Sekunden</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add films…</source>
        <translation>Filme hinzufügen …</translation>
    </message>
    <message>
        <source>all film data</source>
        <translation>alle Filmdaten</translation>
    </message>
    <message>
        <source>All films are done</source>
        <translation>Alle Filme sind fertig</translation>
    </message>
    <message numerus="yes">
        <source>and %n place(s) more</source>
        <translation><numerusform>und %n weitere Stelle</numerusform><numerusform>und %n weitere Stellen</numerusform></translation>
    </message>
    <message>
        <source>another film's: %1</source>
        <translation>von einem anderen Film: %1</translation>
    </message>
    <message>
        <source>Another player may show it. OK opens a web page where you can get one.</source>
        <translation>Ein anderes Abspielprogramm kann ihn vielleicht zeigen. OK öffnet eine Webseite, auf der Sie eines erhalten.</translation>
    </message>
    <message>
        <source>as it was</source>
        <translation>wie zuvor</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>Both repairs keep the same.</source>
        <translation>Beide Reparaturen erhalten dasselbe.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Ändern …</translation>
    </message>
    <message>
        <source>channels</source>
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Choose a file in the list, or type its name.</source>
        <translation>Wählen Sie eine Datei in der Liste aus, oder geben Sie ihren Namen ein.</translation>
    </message>
    <message>
        <source>Choose a file…</source>
        <translation>Datei auswählen …</translation>
    </message>
    <message>
        <source>Choose a film</source>
        <translation>Film auswählen</translation>
    </message>
    <message>
        <source>Choose a film…</source>
        <translation>Film auswählen …</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Choose an AVI file. It is only read: nothing is changed in your file.</source>
        <translation>Wählen Sie eine AVI-Datei aus. Sie wird nur gelesen: An Ihrer Datei wird nichts geändert.</translation>
    </message>
    <message>
        <source>Choose another film from the same camera</source>
        <translation>Einen anderen Film derselben Kamera auswählen</translation>
    </message>
    <message>
        <source>Choose another…</source>
        <translation>Andere auswählen …</translation>
    </message>
    <message>
        <source>Choose films</source>
        <translation>Filme auswählen</translation>
    </message>
    <message>
        <source>Choose the folder for the repaired films</source>
        <translation>Den Ordner für die reparierten Filme auswählen</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Gewählt</translation>
    </message>
    <message>
        <source>Click to see the result</source>
        <translation>Klicken, um das Ergebnis zu sehen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the help</source>
        <translation>Hilfe schließen</translation>
    </message>
    <message>
        <source>codec</source>
        <translation>Codec</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Content of %1</source>
        <translation>Inhalt von %1</translation>
    </message>
    <message>
        <source>Copy report</source>
        <translation>Bericht kopieren</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Anlegen</translation>
    </message>
    <message>
        <source>cut off</source>
        <translation>abgeschnitten</translation>
    </message>
    <message>
        <source>Damage picture</source>
        <translation>Schadensbild</translation>
    </message>
    <message>
        <source>Damage:</source>
        <translation>Schäden:</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Decoding</source>
        <translation>Dekodieren</translation>
    </message>
    <message>
        <source>Deep repair</source>
        <translation>Tiefenreparatur</translation>
    </message>
    <message>
        <source>Deep repair of several films</source>
        <translation>Tiefenreparatur mehrerer Filme</translation>
    </message>
    <message>
        <source>Deep repair of several films, one after the other</source>
        <translation>Tiefenreparatur mehrerer Filme, einer nach dem anderen</translation>
    </message>
    <message>
        <source>Deep repair of your film</source>
        <translation>Tiefenreparatur Ihres Films</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Do not save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>doubled</source>
        <translation>verdoppelt</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Drop an AVI file here</source>
        <translation>AVI-Datei hier ablegen</translation>
    </message>
    <message>
        <source>en_US</source>
        <translation>de_DE</translation>
    </message>
    <message>
        <source>Every byte is looked at, so this takes longer than a repair. Your file is only read.</source>
        <translation>Jedes Byte wird betrachtet, daher dauert das länger als eine Reparatur. Ihre Datei wird nur gelesen.</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Gescheitert</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Dateiname:</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Films to be repaired</source>
        <translation>Zu reparierende Filme</translation>
    </message>
    <message>
        <source>Finishing the repaired file</source>
        <translation>Die reparierte Datei wird fertiggestellt</translation>
    </message>
    <message>
        <source>First choose the AVI file that you want to repair, or drop it on the window.</source>
        <translation>Wählen Sie zuerst die AVI-Datei aus, die Sie reparieren möchten, oder legen Sie sie auf dem Fenster ab.</translation>
    </message>
    <message>
        <source>Folder name:</source>
        <translation>Ordnername:</translation>
    </message>
    <message>
        <source>foreign</source>
        <translation>fremd</translation>
    </message>
    <message>
        <source>format %1</source>
        <translation>Format %1</translation>
    </message>
    <message>
        <source>frame rate</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Header</source>
        <translation>Kopf</translation>
    </message>
    <message>
        <source>header</source>
        <translation>Kopf</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Hold Ctrl or Shift to select several.</source>
        <translation>Halten Sie Strg oder die Umschalttaste gedrückt, um mehrere auszuwählen.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Home folder</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>hurt, kept as it is</source>
        <translation>fehlerhaft, so belassen</translation>
    </message>
    <message>
        <source>in parts at several places</source>
        <translation>in Teilen an mehreren Stellen</translation>
    </message>
    <message>
        <source>index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>inserted</source>
        <translation>eingefügt</translation>
    </message>
    <message>
        <source>It has no sound track, or the description of its sound is lost. Only films with sound can be repaired.</source>
        <translation>Er hat keine Tonspur, oder die Beschreibung seines Tons ist verloren. Nur Filme mit Ton können repariert werden.</translation>
    </message>
    <message>
        <source>It is made in %1.</source>
        <translation>Er wird in %1 angelegt.</translation>
    </message>
    <message>
        <source>It is too small: only films larger than 0.5 MB (524,288 bytes) can be repaired.</source>
        <translation>Er ist zu klein: Nur Filme mit mehr als 0,5 MB (524.288 Bytes) können repariert werden.</translation>
    </message>
    <message>
        <source>It stands on these libraries, each under a licence of its own:</source>
        <translation>Sie beruht auf diesen Bibliotheken, jede mit einer eigenen Lizenz:</translation>
    </message>
    <message>
        <source>It was saved as %1.</source>
        <translation>Er wurde als %1 gespeichert.</translation>
    </message>
    <message>
        <source>It was stopped.</source>
        <translation>Sie wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Its beginning could not be read from the disk, and a film cannot be repaired without it.</source>
        <translation>Sein Anfang konnte nicht vom Datenträger gelesen werden, und ohne ihn lässt sich ein Film nicht reparieren.</translation>
    </message>
    <message>
        <source>its header cannot be that of this film, and was not used</source>
        <translation>sein Kopf kann nicht der dieses Films sein und wurde nicht verwendet</translation>
    </message>
    <message>
        <source>Its pictures are not compressed. Only films with compressed pictures can be repaired.</source>
        <translation>Seine Bilder sind nicht komprimiert. Nur Filme mit komprimierten Bildern können repariert werden.</translation>
    </message>
    <message>
        <source>Keep repairing</source>
        <translation>Weiter reparieren</translation>
    </message>
    <message>
        <source>Keep saving</source>
        <translation>Weiter speichern</translation>
    </message>
    <message>
        <source>Kept</source>
        <translation>Erhalten</translation>
    </message>
    <message>
        <source>Last chosen: %1</source>
        <translation>Zuletzt ausgewählt: %1</translation>
    </message>
    <message>
        <source>Last saved</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>Leave</source>
        <translation>Verlassen</translation>
    </message>
    <message>
        <source>Left out</source>
        <translation>Ausgelassen</translation>
    </message>
    <message>
        <source>left out</source>
        <translation>ausgelassen</translation>
    </message>
    <message>
        <source>less than %1 s</source>
        <translation>weniger als %1 s</translation>
    </message>
    <message>
        <source>Licences</source>
        <translation>Lizenzen</translation>
    </message>
    <message>
        <source>Look at it here, then save it to a folder of your choice.</source>
        <translation>Sehen Sie ihn sich hier an, und speichern Sie ihn dann in einem Ordner Ihrer Wahl.</translation>
    </message>
    <message>
        <source>Look for an update</source>
        <translation>Nach Update suchen</translation>
    </message>
    <message>
        <source>Looks at every byte of the film, for those that Repair cannot mend</source>
        <translation>Betrachtet jedes Byte des Films, für solche, die „Reparieren“ nicht in Ordnung bringt</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>verloren</translation>
    </message>
    <message>
        <source>made again: %1</source>
        <translation>neu erstellt: %1</translation>
    </message>
    <message>
        <source>mended</source>
        <translation>in Ordnung gebracht</translation>
    </message>
    <message>
        <source>MiB</source>
        <translation>MiB</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>fehlt</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Ton aus</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Name of the new folder</source>
        <translation>Name des neuen Ordners</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>New folder…</source>
        <translation>Neuer Ordner …</translation>
    </message>
    <message>
        <source>No file chosen yet</source>
        <translation>Noch keine Datei ausgewählt</translation>
    </message>
    <message>
        <source>No film chosen yet</source>
        <translation>Noch kein Film ausgewählt</translation>
    </message>
    <message>
        <source>no film data</source>
        <translation>keine Filmdaten</translation>
    </message>
    <message>
        <source>No films yet. Add some to repair them one after the other.</source>
        <translation>Noch keine Filme. Fügen Sie welche hinzu, um sie nacheinander zu reparieren.</translation>
    </message>
    <message>
        <source>No folder chosen yet</source>
        <translation>Noch kein Ordner ausgewählt</translation>
    </message>
    <message>
        <source>No picture and no sound is lost.</source>
        <translation>Kein Bild und kein Ton ist verloren.</translation>
    </message>
    <message>
        <source>No picture could be kept</source>
        <translation>Kein Bild konnte erhalten werden</translation>
    </message>
    <message>
        <source>No picture was kept</source>
        <translation>Kein Bild ist erhalten</translation>
    </message>
    <message>
        <source>No preview in this build. You can save the film and open it in a player.</source>
        <translation>Diese Programmfassung hat keine Vorschau. Sie können den Film speichern und in einem Abspielprogramm öffnen.</translation>
    </message>
    <message>
        <source>No web browser could be started, so the page is shown here.</source>
        <translation>Es konnte kein Webbrowser gestartet werden, daher wird die Seite hier gezeigt.</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Normal and deep repair</source>
        <translation>Normale Reparatur und Tiefenreparatur</translation>
    </message>
    <message>
        <source>Normal repair</source>
        <translation>Normale Reparatur</translation>
    </message>
    <message>
        <source>Not all films are done</source>
        <translation>Nicht alle Filme sind fertig</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Jetzt nicht</translation>
    </message>
    <message>
        <source>not of this film, left out</source>
        <translation>nicht aus diesem Film, ausgelassen</translation>
    </message>
    <message>
        <source>not rescued from the disk</source>
        <translation>nicht vom Datenträger gerettet</translation>
    </message>
    <message>
        <source>Not whole</source>
        <translation>Unvollständig</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>Nothing could be brought back</source>
        <translation>Nichts war zurückzuholen</translation>
    </message>
    <message numerus="yes">
        <source>Nothing could be made of %n film(s).</source>
        <translation><numerusform>Aus %n Film ließ sich nichts machen.</numerusform><numerusform>Aus %n Filmen ließ sich nichts machen.</numerusform></translation>
    </message>
    <message>
        <source>Nothing is lost</source>
        <translation>Nichts ist verloren</translation>
    </message>
    <message>
        <source>Nothing is wrong with this film.</source>
        <translation>Diesem Film fehlt nichts.</translation>
    </message>
    <message>
        <source>Nothing of this film can be brought back.</source>
        <translation>Von diesem Film lässt sich nichts zurückholen.</translation>
    </message>
    <message>
        <source>Nothing was changed in your file.</source>
        <translation>An Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>Nothing was left behind, and the repaired film is still here: you can save it to another place.</source>
        <translation>Es wurde nichts zurückgelassen, und der reparierte Film ist noch hier: Sie können ihn an einem anderen Ort speichern.</translation>
    </message>
    <message>
        <source>Nothing was wrong</source>
        <translation>Es fehlte nichts</translation>
    </message>
    <message numerus="yes">
        <source>Of %n picture(s), only zeros are left.</source>
        <translation><numerusform>Von %n Bild sind nur Nullen übrig.</numerusform><numerusform>Von %n Bildern sind nur Nullen übrig.</numerusform></translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>On the next page you can look at it and save it. Nothing was changed in your damaged file.</source>
        <translation>Auf der nächsten Seite können Sie ihn ansehen und speichern. An Ihrer beschädigten Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>One film at a time, please.</source>
        <translation>Bitte immer nur einen Film.</translation>
    </message>
    <message>
        <source>One is repaired after the other. Your files are only read.</source>
        <translation>Einer wird nach dem anderen repariert. Ihre Dateien werden nur gelesen.</translation>
    </message>
    <message>
        <source>Only a file of this computer can be dropped here.</source>
        <translation>Hier kann nur eine Datei dieses Computers abgelegt werden.</translation>
    </message>
    <message>
        <source>Only files whose names end in %1 can be chosen.</source>
        <translation>Nur Dateien, deren Namen auf %1 enden, können ausgewählt werden.</translation>
    </message>
    <message>
        <source>Only films whose names end in .avi, .divx or .xvid can be repaired here. Nothing was changed in your file.</source>
        <translation>Nur Filme, deren Namen auf .avi, .divx oder .xvid enden, können hier repariert werden. An Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>opening</source>
        <translation>Wird geöffnet</translation>
    </message>
    <message>
        <source>Other film</source>
        <translation>Anderer Film</translation>
    </message>
    <message>
        <source>overwritten</source>
        <translation>überschrieben</translation>
    </message>
    <message>
        <source>partly lost, and made again</source>
        <translation>teilweise verloren und neu gemacht</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Place in the film</source>
        <translation>Stelle im Film</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>plain</source>
        <translation>einfach</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Please answer the message first.</source>
        <translation>Bitte beantworten Sie zuerst die Meldung.</translation>
    </message>
    <message>
        <source>Please choose the film itself.</source>
        <translation>Bitte wählen Sie den Film selbst aus.</translation>
    </message>
    <message>
        <source>Please choose the film itself. It leads to %1.</source>
        <translation>Bitte wählen Sie den Film selbst aus. Die Verknüpfung führt zu %1.</translation>
    </message>
    <message>
        <source>Please go back with Home and repair the film again.</source>
        <translation>Bitte gehen Sie mit „Startseite“ zurück und reparieren Sie den Film noch einmal.</translation>
    </message>
    <message>
        <source>Please leave the disk connected until this is done.</source>
        <translation>Bitte lassen Sie den Datenträger angeschlossen, bis dies abgeschlossen ist.</translation>
    </message>
    <message>
        <source>Please type a name.</source>
        <translation>Bitte geben Sie einen Namen ein.</translation>
    </message>
    <message>
        <source>Press Home first: a film is dropped on the first page.</source>
        <translation>Drücken Sie zuerst „Startseite“: Ein Film wird auf der ersten Seite abgelegt.</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Preview of the film, not playing</source>
        <translation>Vorschau des Films, angehalten</translation>
    </message>
    <message>
        <source>Preview of the film, paused</source>
        <translation>Vorschau des Films, pausiert</translation>
    </message>
    <message>
        <source>Preview of the film, playing</source>
        <translation>Vorschau des Films, läuft</translation>
    </message>
    <message>
        <source>Preview, no film yet</source>
        <translation>Vorschau, noch kein Film</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>put together again</source>
        <translation>wieder zusammengesetzt</translation>
    </message>
    <message>
        <source>reading headers</source>
        <translation>Köpfe werden gelesen</translation>
    </message>
    <message>
        <source>Reading the damaged film: %1 of %2</source>
        <translation>Der beschädigte Film wird gelesen: %1 von %2</translation>
    </message>
    <message>
        <source>Reading this folder…</source>
        <translation>Ordner wird gelesen …</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparieren</translation>
    </message>
    <message>
        <source>Repair a film that no longer plays</source>
        <translation>Einen Film reparieren, der nicht mehr läuft</translation>
    </message>
    <message>
        <source>Repaired in part</source>
        <translation>Teilweise repariert</translation>
    </message>
    <message>
        <source>Repairing your film</source>
        <translation>Ihr Film wird repariert</translation>
    </message>
    <message>
        <source>Repairs damaged AVI films on this computer. Your films are only read.</source>
        <translation>Repariert beschädigte AVI-Filme auf diesem Computer. Ihre Filme werden nur gelesen.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Replace what is there?</source>
        <translation>Vorhandenes ersetzen?</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>sample rate</source>
        <translation>Abtastrate</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save the repaired film</source>
        <translation>Den reparierten Film speichern</translation>
    </message>
    <message>
        <source>Save the report beside it</source>
        <translation>Den Bericht daneben speichern</translation>
    </message>
    <message>
        <source>Saved into</source>
        <translation>Gespeichert in</translation>
    </message>
    <message>
        <source>Saves to  %1</source>
        <translation>Wird gespeichert in  %1</translation>
    </message>
    <message>
        <source>Save…</source>
        <translation>Speichern …</translation>
    </message>
    <message>
        <source>Saving is done</source>
        <translation>Speichern abgeschlossen</translation>
    </message>
    <message>
        <source>Saving your film</source>
        <translation>Ihr Film wird gespeichert</translation>
    </message>
    <message>
        <source>searching</source>
        <translation>Wird durchsucht</translation>
    </message>
    <message>
        <source>See the result</source>
        <translation>Ergebnis ansehen</translation>
    </message>
    <message numerus="yes">
        <source>sent as if it were text, which put %n byte(s) in; they are left out</source>
        <translation><numerusform>wie Text übertragen, was %n Byte eingefügt hat; es ist ausgelassen</numerusform><numerusform>wie Text übertragen, was %n Bytes eingefügt hat; sie sind ausgelassen</numerusform></translation>
    </message>
    <message>
        <source>Several films</source>
        <translation>Mehrere Filme</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Some of it is lost. Look at what was kept here, then save it to a folder of your choice.</source>
        <translation>Ein Teil ist verloren. Sehen Sie sich hier an, was erhalten ist, und speichern Sie es dann in einem Ordner Ihrer Wahl.</translation>
    </message>
    <message>
        <source>Some of it is lost. On the next page you can see what was kept, look at it and save it. Nothing was changed in your damaged file.</source>
        <translation>Ein Teil ist verloren. Auf der nächsten Seite sehen Sie, was erhalten ist, und können es ansehen und speichern. An Ihrer beschädigten Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>Something is lost</source>
        <translation>Etwas ist verloren</translation>
    </message>
    <message>
        <source>Something of that name has come to be there.</source>
        <translation>Inzwischen gibt es dort etwas mit diesem Namen.</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>Sound on</source>
        <translation>Ton ein</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>Starting…</source>
        <translation>Wird gestartet …</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Stay here</source>
        <translation>Hier bleiben</translation>
    </message>
    <message>
        <source>Step %1 of 3: %2</source>
        <translation>Schritt %1 von 3: %2</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop and leave</source>
        <translation>Abbrechen und verlassen</translation>
    </message>
    <message>
        <source>Stop preview</source>
        <translation>Vorschau anhalten</translation>
    </message>
    <message>
        <source>Stop saving</source>
        <translation>Speichern abbrechen</translation>
    </message>
    <message>
        <source>Stop saving?</source>
        <translation>Speichern abbrechen?</translation>
    </message>
    <message>
        <source>Stop the repair</source>
        <translation>Reparatur abbrechen</translation>
    </message>
    <message>
        <source>Stop the repair?</source>
        <translation>Reparatur abbrechen?</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Take it out of the list</source>
        <translation>Aus der Liste nehmen</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>That folder already holds a file repaired.avi. Replace it?</source>
        <translation>Dieser Ordner enthält schon eine Datei repaired.avi. Ersetzen?</translation>
    </message>
    <message>
        <source>That is a folder. Now choose a file in it.</source>
        <translation>Das ist ein Ordner. Wählen Sie nun eine Datei darin aus.</translation>
    </message>
    <message>
        <source>That is a folder. Now type a name for the file.</source>
        <translation>Das ist ein Ordner. Geben Sie nun einen Namen für die Datei ein.</translation>
    </message>
    <message>
        <source>That is not an ordinary file. Please choose another.</source>
        <translation>Das ist keine gewöhnliche Datei. Bitte wählen Sie eine andere aus.</translation>
    </message>
    <message>
        <source>That name is taken already. Please choose another.</source>
        <translation>Dieser Name ist schon vergeben. Bitte wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>That name is too long. Please choose a shorter one.</source>
        <translation>Dieser Name ist zu lang. Bitte wählen Sie einen kürzeren.</translation>
    </message>
    <message>
        <source>That would overwrite the damaged file itself. Please choose another name or folder.</source>
        <translation>Das würde die beschädigte Datei selbst überschreiben. Bitte wählen Sie einen anderen Namen oder Ordner.</translation>
    </message>
    <message>
        <source>That would overwrite the damaged film itself. Please choose another name or folder.</source>
        <translation>Das würde den beschädigten Film selbst überschreiben. Bitte wählen Sie einen anderen Namen oder Ordner.</translation>
    </message>
    <message>
        <source>The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in your file.</source>
        <translation>Der Anfang der Datei sieht nicht nach einer AVI-Datei aus, daher gibt es nichts zu reparieren. An Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>the code is mended</source>
        <translation>der Code ist berichtigt</translation>
    </message>
    <message>
        <source>The copy is incomplete: %1</source>
        <translation>Die Kopie ist unvollständig: %1</translation>
    </message>
    <message>
        <source>The damaged file</source>
        <translation>Die beschädigte Datei</translation>
    </message>
    <message>
        <source>The damaged file holds neither pictures nor sound. There is nothing worth saving.</source>
        <translation>Die beschädigte Datei enthält weder Bilder noch Ton. Es gibt nichts, was sich zu speichern lohnt.</translation>
    </message>
    <message>
        <source>The damaged file holds no pictures. If you save it, you get the sound alone.</source>
        <translation>Die beschädigte Datei enthält keine Bilder. Wenn Sie speichern, erhalten Sie nur den Ton.</translation>
    </message>
    <message>
        <source>The deep repair could not be started. The system says: %1.</source>
        <translation>Die Tiefenreparatur konnte nicht gestartet werden. Das System meldet: %1.</translation>
    </message>
    <message>
        <source>The deep repair did not come to its end</source>
        <translation>Die Tiefenreparatur kam nicht zu ihrem Ende</translation>
    </message>
    <message>
        <source>The deep repair is still at work</source>
        <translation>Die Tiefenreparatur läuft noch</translation>
    </message>
    <message>
        <source>The deep repair keeps more than the normal one.</source>
        <translation>Die Tiefenreparatur erhält mehr als die normale.</translation>
    </message>
    <message>
        <source>The descriptions at the beginning of the damaged file are there, but the pictures are not. The next page tells what was kept. Nothing was changed in your damaged file.</source>
        <translation>Die Beschreibungen am Anfang der beschädigten Datei sind da, die Bilder aber nicht. Die nächste Seite sagt, was erhalten ist. An Ihrer beschädigten Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>The descriptions of pictures and sound at its beginning are lost or damaged.</source>
        <translation>Die Beschreibungen von Bild und Ton an seinem Anfang sind verloren oder beschädigt.</translation>
    </message>
    <message>
        <source>The disk is taking in the last bytes…</source>
        <translation>Der Datenträger nimmt die letzten Bytes auf …</translation>
    </message>
    <message>
        <source>The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another place.</source>
        <translation>Der Datenträger oder Server antwortet nicht. Es wurde nichts geändert. Bitte versuchen Sie es noch einmal, wenn er wieder da ist, oder wählen Sie einen anderen Ort.</translation>
    </message>
    <message>
        <source>The disk or server does not answer. Please try again when it is back, or choose another place.</source>
        <translation>Der Datenträger oder Server antwortet nicht. Bitte versuchen Sie es noch einmal, wenn er wieder da ist, oder wählen Sie einen anderen Ort.</translation>
    </message>
    <message>
        <source>The film cannot be saved there</source>
        <translation>Der Film kann dort nicht gespeichert werden</translation>
    </message>
    <message>
        <source>The film does not answer</source>
        <translation>Der Film antwortet nicht</translation>
    </message>
    <message>
        <source>The film is not there any more.</source>
        <translation>Der Film ist nicht mehr da.</translation>
    </message>
    <message>
        <source>The film is saved</source>
        <translation>Der Film ist gespeichert</translation>
    </message>
    <message>
        <source>The film was not saved</source>
        <translation>Der Film wurde nicht gespeichert</translation>
    </message>
    <message>
        <source>The film was not saved whole</source>
        <translation>Der Film wurde nicht vollständig gespeichert</translation>
    </message>
    <message>
        <source>the film's own</source>
        <translation>der des Films selbst</translation>
    </message>
    <message>
        <source>the film's own: %1</source>
        <translation>vom Film selbst: %1</translation>
    </message>
    <message>
        <source>The folder could not be made: %1.</source>
        <translation>Der Ordner konnte nicht angelegt werden: %1.</translation>
    </message>
    <message>
        <source>The header of this film is lost</source>
        <translation>Der Kopf dieses Films ist verloren</translation>
    </message>
    <message>
        <source>The header says how pictures and sound are to be shown. Another film from the same camera, one that plays, has the same one and can lend it. It is not changed. Have you got such a film?</source>
        <translation>Der Kopf sagt, wie Bilder und Ton wiederzugeben sind. Ein anderer Film derselben Kamera, der sich abspielen lässt, hat denselben und kann ihn leihen. Er wird nicht verändert. Haben Sie einen solchen Film?</translation>
    </message>
    <message>
        <source>The last part is still being written. This takes only a moment.</source>
        <translation>Der letzte Teil wird noch geschrieben. Das dauert nur einen Moment.</translation>
    </message>
    <message>
        <source>The normal repair does not take this film.</source>
        <translation>Die normale Reparatur nimmt diesen Film nicht an.</translation>
    </message>
    <message>
        <source>The normal repair keeps more; it also takes what only looks like a part of the film.</source>
        <translation>Die normale Reparatur erhält mehr; sie nimmt auch, was nur wie ein Teil des Films aussieht.</translation>
    </message>
    <message>
        <source>The picture of this film cannot be shown here, only its sound be heard. You can save it and try another player.</source>
        <translation>Das Bild dieses Films kann hier nicht gezeigt werden, nur sein Ton ist zu hören. Sie können ihn speichern und ein anderes Abspielprogramm versuchen.</translation>
    </message>
    <message>
        <source>the pictures go on</source>
        <translation>die Bilder laufen weiter</translation>
    </message>
    <message>
        <source>The preview cannot open this film. You can save it, but another player may not open it either.</source>
        <translation>Die Vorschau kann diesen Film nicht öffnen. Sie können ihn speichern, aber vielleicht öffnet ihn auch ein anderes Abspielprogramm nicht.</translation>
    </message>
    <message>
        <source>The program that worked on it ended without a word.</source>
        <translation>Das Programm, das daran arbeitete, endete ohne ein Wort.</translation>
    </message>
    <message>
        <source>The program that worked on it was ended before it was done (signal %1).</source>
        <translation>Das Programm, das daran arbeitete, wurde vorzeitig beendet (Signal %1).</translation>
    </message>
    <message>
        <source>the program was asked to end.</source>
        <translation>das Programm wurde zum Beenden aufgefordert.</translation>
    </message>
    <message>
        <source>The program zelvo-avi, which does the deep repair and lies beside this one, is missing. Installing Zelvo AVI Repair again brings it back.</source>
        <translation>Das Programm zelvo-avi, das die Tiefenreparatur ausführt und neben diesem liegt, fehlt. Installieren Sie Zelvo AVI Repair erneut, um es zurückzubringen.</translation>
    </message>
    <message>
        <source>the program zelvo-avi-decoder, which could have found more, is missing or did not last</source>
        <translation>das Programm zelvo-avi-decoder, das mehr hätte finden können, fehlt oder hielt nicht durch</translation>
    </message>
    <message>
        <source>The reason: %1</source>
        <translation>Der Grund (auf Englisch): %1</translation>
    </message>
    <message>
        <source>The repair was stopped before the beginning of the film had been read.</source>
        <translation>Die Reparatur wurde abgebrochen, bevor der Anfang des Films gelesen war.</translation>
    </message>
    <message>
        <source>The repaired file could not be written</source>
        <translation>Die reparierte Datei konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <source>the repaired file is no longer there.</source>
        <translation>die reparierte Datei ist nicht mehr da.</translation>
    </message>
    <message>
        <source>The repaired file was saved as %1.</source>
        <translation>Die reparierte Datei wurde als %1 gespeichert.</translation>
    </message>
    <message>
        <source>The repaired film</source>
        <translation>Der reparierte Film</translation>
    </message>
    <message>
        <source>The repaired film could not be read: %1.</source>
        <translation>Der reparierte Film konnte nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>The repaired film is copied to where you want it.</source>
        <translation>Der reparierte Film wird dorthin kopiert, wo Sie ihn haben möchten.</translation>
    </message>
    <message>
        <source>The repaired film is no longer there, or not whole any more.</source>
        <translation>Der reparierte Film ist nicht mehr da oder nicht mehr vollständig.</translation>
    </message>
    <message>
        <source>The repaired film is not saved</source>
        <translation>Der reparierte Film ist nicht gespeichert</translation>
    </message>
    <message>
        <source>The report could not be saved beside it: %1.</source>
        <translation>Der Bericht konnte nicht daneben gespeichert werden: %1.</translation>
    </message>
    <message>
        <source>The report lies beside it: %1.</source>
        <translation>Der Bericht liegt daneben: %1.</translation>
    </message>
    <message>
        <source>the size is mended</source>
        <translation>die Größe ist berichtigt</translation>
    </message>
    <message>
        <source>the sound goes on</source>
        <translation>der Ton läuft weiter</translation>
    </message>
    <message>
        <source>The system has no room for more work at once. Closing other programs helps.</source>
        <translation>Das System hat keinen Platz für weitere gleichzeitige Arbeit. Andere Programme zu schließen hilft.</translation>
    </message>
    <message>
        <source>The system says: %1.</source>
        <translation>Das System meldet: %1.</translation>
    </message>
    <message>
        <source>The text of that licence is in %1.</source>
        <translation>Der Text dieser Lizenz steht in %1.</translation>
    </message>
    <message>
        <source>the time of what is lost is filled</source>
        <translation>die Zeit des Verlorenen ist aufgefüllt</translation>
    </message>
    <message>
        <source>The updater is not installed. Updates come from where the program was installed from.</source>
        <translation>Das Aktualisierungsprogramm ist nicht installiert. Updates kommen von dort, woher das Programm installiert wurde.</translation>
    </message>
    <message>
        <source>The working folder cannot be used</source>
        <translation>Der Arbeitsordner ist nicht brauchbar</translation>
    </message>
    <message>
        <source>There are no folders in here.</source>
        <translation>Hier gibt es keine Ordner.</translation>
    </message>
    <message>
        <source>There is a file “%1” already. Replacing it deletes what it holds.</source>
        <translation>Eine Datei „%1“ gibt es schon. Wenn Sie sie ersetzen, wird ihr Inhalt gelöscht.</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>Es gibt keine Datei %1.</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>Es gibt keinen Ordner %1.</translation>
    </message>
    <message>
        <source>There is no place for the repaired film</source>
        <translation>Es gibt keinen Platz für den reparierten Film</translation>
    </message>
    <message>
        <source>There is no such film. It may have been moved, renamed or removed.</source>
        <translation>Diesen Film gibt es nicht. Er wurde vielleicht verschoben, umbenannt oder gelöscht.</translation>
    </message>
    <message>
        <source>There is no working folder that can be used.</source>
        <translation>Es gibt keinen brauchbaren Arbeitsordner.</translation>
    </message>
    <message>
        <source>There is not enough memory. Closing other programs helps.</source>
        <translation>Es ist nicht genug Speicher frei. Andere Programme zu schließen hilft.</translation>
    </message>
    <message>
        <source>There is not enough room: the film takes %1, and %2 are free in %3.</source>
        <translation>Es ist nicht genug Platz: Der Film braucht %1, und in %3 sind %2 frei.</translation>
    </message>
    <message>
        <source>There is nothing to choose in this folder.</source>
        <translation>In diesem Ordner gibt es nichts auszuwählen.</translation>
    </message>
    <message>
        <source>there twice, left out</source>
        <translation>doppelt vorhanden, ausgelassen</translation>
    </message>
    <message>
        <source>This can take a few minutes for a long film. You can go on working meanwhile.</source>
        <translation>Bei einem langen Film kann das einige Minuten dauern. Sie können währenddessen weiterarbeiten.</translation>
    </message>
    <message>
        <source>This cannot be chosen</source>
        <translation>Das kann nicht ausgewählt werden</translation>
    </message>
    <message>
        <source>This film cannot be read</source>
        <translation>Dieser Film kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>This film cannot be repaired</source>
        <translation>Dieser Film kann nicht repariert werden</translation>
    </message>
    <message>
        <source>This film cannot be shown here</source>
        <translation>Dieser Film kann hier nicht gezeigt werden</translation>
    </message>
    <message>
        <source>This film is no longer there</source>
        <translation>Dieser Film ist nicht mehr da</translation>
    </message>
    <message>
        <source>This film was damaged; %1.</source>
        <translation>Dieser Film war beschädigt; %1.</translation>
    </message>
    <message>
        <source>This film was damaged; all of its pictures and sound are there again.</source>
        <translation>Dieser Film war beschädigt; alle seine Bilder und sein Ton sind wieder da.</translation>
    </message>
    <message>
        <source>This folder cannot be read: %1.</source>
        <translation>Dieser Ordner kann nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>This folder cannot be used</source>
        <translation>Dieser Ordner ist nicht brauchbar</translation>
    </message>
    <message>
        <source>This is free software: you may use it, pass it on and change it under the terms of the GNU General Public License, version 3 or any later version. It comes without any warranty.</source>
        <translation>Dies ist freie Software: Sie dürfen sie nach den Bedingungen der GNU General Public License, Version 3 oder jeder späteren Version, nutzen, weitergeben und verändern. Sie wird ohne jede Gewährleistung bereitgestellt.</translation>
    </message>
    <message>
        <source>This is not an AVI film</source>
        <translation>Das ist kein AVI-Film</translation>
    </message>
    <message>
        <source>This is only a link to a film</source>
        <translation>Das ist nur eine Verknüpfung zu einem Film</translation>
    </message>
    <message>
        <source>This page is not on this computer. Its address is:

%1</source>
        <translation>Diese Seite ist nicht auf diesem Computer. Ihre Adresse ist:

%1</translation>
    </message>
    <message>
        <source>This version does not know where to look. Updates come from where it was installed from.</source>
        <translation>Diese Version weiß nicht, wo sie suchen soll. Updates kommen von dort, woher sie installiert wurde.</translation>
    </message>
    <message>
        <source>Tip:</source>
        <translation>Tipp:</translation>
    </message>
    <message>
        <source>To the folder above (Backspace)</source>
        <translation>Zum übergeordneten Ordner (Rücktaste)</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Übertragung</translation>
    </message>
    <message>
        <source>Try a deep repair</source>
        <translation>Tiefenreparatur versuchen</translation>
    </message>
    <message>
        <source>uncompressed</source>
        <translation>unkomprimiert</translation>
    </message>
    <message>
        <source>under 1 % of it</source>
        <translation>unter 1 % davon</translation>
    </message>
    <message>
        <source>Unreadable</source>
        <translation>Nicht lesbar</translation>
    </message>
    <message>
        <source>unreadable</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Aufwärts</translation>
    </message>
    <message>
        <source>Use a film of the same camera…</source>
        <translation>Film derselben Kamera verwenden …</translation>
    </message>
    <message>
        <source>Use this film</source>
        <translation>Diesen Film verwenden</translation>
    </message>
    <message>
        <source>Use this folder</source>
        <translation>Diesen Ordner verwenden</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>video</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Videos</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>waiting for the disk</source>
        <translation>Auf den Datenträger wird gewartet</translation>
    </message>
    <message>
        <source>Waiting until the repair before this one has ended. Its last step cannot be cut short.</source>
        <translation>Es wird gewartet, bis die vorherige Reparatur beendet ist. Ihr letzter Schritt lässt sich nicht abkürzen.</translation>
    </message>
    <message>
        <source>weighing what was found</source>
        <translation>Das Gefundene wird abgewogen</translation>
    </message>
    <message>
        <source>What happened where</source>
        <translation>Was wo geschehen ist</translation>
    </message>
    <message>
        <source>What is in the folder by now stays there. You can save the film again at any time.</source>
        <translation>Was bis jetzt im Ordner ist, bleibt dort. Sie können den Film jederzeit noch einmal speichern.</translation>
    </message>
    <message>
        <source>what is left is kept, the time of what is lost is filled</source>
        <translation>was übrig ist, bleibt erhalten; die Zeit des Verlorenen ist aufgefüllt</translation>
    </message>
    <message>
        <source>What it wrote is not there, or cannot be read.</source>
        <translation>Was es geschrieben hat, ist nicht da oder nicht lesbar.</translation>
    </message>
    <message>
        <source>What the normal repair would keep could not be found out.</source>
        <translation>Was die normale Reparatur erhalten würde, war nicht zu ermitteln.</translation>
    </message>
    <message>
        <source>What was repaired so far is given up. Nothing was changed in your file.</source>
        <translation>Was bisher repariert wurde, wird verworfen. An Ihrer Datei wurde nichts geändert.</translation>
    </message>
    <message>
        <source>When you leave without saving it, it is gone. Your damaged film stays.</source>
        <translation>Wenn Sie die Seite verlassen, ohne ihn zu speichern, ist er fort. Ihr beschädigter Film bleibt.</translation>
    </message>
    <message>
        <source>When you leave, it is stopped, and nothing comes of it.</source>
        <translation>Wenn Sie die Seite verlassen, wird sie abgebrochen, und es bleibt nichts davon.</translation>
    </message>
    <message>
        <source>When you leave, those that are not done yet are left out. Films that are done stay where they were saved.</source>
        <translation>Wenn Sie die Seite verlassen, werden die ausgelassen, die noch nicht fertig sind. Fertige Filme bleiben, wo sie gespeichert wurden.</translation>
    </message>
    <message>
        <source>Where should it be saved?</source>
        <translation>Wo soll gespeichert werden?</translation>
    </message>
    <message>
        <source>Why</source>
        <translation>Warum</translation>
    </message>
    <message>
        <source>With what the normal repair keeps of the same film</source>
        <translation>Mit dem, was die normale Reparatur vom selben Film erhält</translation>
    </message>
    <message>
        <source>Working</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Working folder: %1 (%2)</source>
        <translation>Arbeitsordner: %1 (%2)</translation>
    </message>
    <message>
        <source>writing</source>
        <translation>Wird geschrieben</translation>
    </message>
    <message>
        <source>Writing failed: %1.</source>
        <translation>Das Schreiben schlug fehl: %1.</translation>
    </message>
    <message>
        <source>Writing the repaired film: %1 of %2</source>
        <translation>Der reparierte Film wird geschrieben: %1 von %2</translation>
    </message>
    <message>
        <source>wrong code</source>
        <translation>falscher Code</translation>
    </message>
    <message>
        <source>wrong size</source>
        <translation>falsche Größe</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>You may not read that file. Please choose another, or ask its owner.</source>
        <translation>Sie dürfen diese Datei nicht lesen. Bitte wählen Sie eine andere aus, oder fragen Sie ihren Besitzer.</translation>
    </message>
    <message>
        <source>You may not save in %1. Please choose another folder.</source>
        <translation>In %1 dürfen Sie nicht speichern. Bitte wählen Sie einen anderen Ordner.</translation>
    </message>
    <message>
        <source>Your film was repaired</source>
        <translation>Ihr Film wurde repariert</translation>
    </message>
    <message>
        <source>Your film was repaired in part</source>
        <translation>Ihr Film wurde teilweise repariert</translation>
    </message>
    <message>
        <source>Your repaired film</source>
        <translation>Ihr reparierter Film</translation>
    </message>
    <message>
        <source>Your repaired film will be shown here.</source>
        <translation>Hier wird Ihr reparierter Film gezeigt.</translation>
    </message>
    <message>
        <source>zeroed</source>
        <translation>mit Nullen gefüllt</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
</context>
</TS>
