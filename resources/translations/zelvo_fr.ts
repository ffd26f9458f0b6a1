<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>zelvo</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 % of film data</source>
        <translation>%1 % des données</translation>
    </message>
    <message>
        <source>%1 % – %2</source>
        <translation>%1 % – %2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 %2; it might also be %3</source>
        <translation>%1 %2 ; ce pourrait aussi être %3</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>%1 are free, about %2 are needed</source>
        <translation>%1 sont libres, %2 environ sont nécessaires</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 octets</translation>
    </message>
    <message>
        <source>%1 cannot hold a repaired film until you save it, so nothing was changed. The system says: %2.</source>
        <translation>%1 ne peut pas contenir un film réparé jusqu’à ce que vous l’enregistriez ; rien n’a donc été modifié. Le système indique : %2.</translation>
    </message>
    <message>
        <source>%1 could not be read or written.</source>
        <translation>%1 n’a pas pu être lu ou écrit.</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 Go</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 is not a folder that can be written to.</source>
        <translation>%1 n’est pas un dossier où l’on peut écrire.</translation>
    </message>
    <message>
        <source>%1 is not a folder.</source>
        <translation>%1 n’est pas un dossier.</translation>
    </message>
    <message>
        <source>%1 is not there any more.</source>
        <translation>%1 n’est plus là.</translation>
    </message>
    <message>
        <source>%1 kB</source>
        <translation>%1 ko</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 Mo</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 Nothing was changed in your file, and it is still chosen: you can press Repair again.</source>
        <translation>%1 Rien n’a été modifié dans votre fichier, et il est toujours choisi : vous pouvez appuyer à nouveau sur « Réparer ».</translation>
    </message>
    <message>
        <source>%1 Nothing was changed in your file.</source>
        <translation>%1 Rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>%1 Nothing was saved, and the repaired file is still there: you can press Save again.</source>
        <translation>%1 Rien n’a été enregistré, et le fichier réparé est toujours là : vous pouvez appuyer à nouveau sur « Enregistrer ».</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>%1 of %2 copied</source>
        <translation>%1 sur %2 copiés</translation>
    </message>
    <message>
        <source>%1 of its pictures and %2 of its sound are lost or hurt, the rest is there, in step</source>
        <translation>%1 de ses images et %2 de son son sont perdus ou abîmés, le reste est là, synchrone</translation>
    </message>
    <message>
        <source>%1 of its pictures are lost or hurt, all of its sound is there, in step</source>
        <translation>%1 de ses images sont perdues ou abîmées, tout le son est là, synchrone</translation>
    </message>
    <message>
        <source>%1 of its pictures are lost or hurt, the rest is there, in step</source>
        <translation>%1 de ses images sont perdues ou abîmées, le reste est là, synchrone</translation>
    </message>
    <message>
        <source>%1 of its sound is lost or hurt, all of its pictures are there, in step</source>
        <translation>%1 de son son sont perdues ou abîmées, toutes les images sont là, synchrones</translation>
    </message>
    <message>
        <source>%1 of its sound is lost or hurt, the rest is there, in step</source>
        <translation>%1 de son son sont perdues ou abîmées, le reste est là, synchrone</translation>
    </message>
    <message>
        <source>%1 of the repaired file are no longer there.</source>
        <translation>%1 du fichier réparé ne sont plus là.</translation>
    </message>
    <message>
        <source>%1 of the repaired file could not be read: %2.</source>
        <translation>%1 du fichier réparé n’ont pas pu être lus : %2.</translation>
    </message>
    <message>
        <source>%1 or %2</source>
        <translation>%1 ou %2</translation>
    </message>
    <message>
        <source>%1 Please go back with Home and repair the film again.</source>
        <translation>%1 Revenez avec « Accueil » et réparez le film à nouveau.</translation>
    </message>
    <message>
        <source>%1 Please save again, to another place.</source>
        <translation>%1 Veuillez enregistrer à nouveau, à un autre emplacement.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation>%1 To</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 à %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, folder</source>
        <translation>%1, dossier</translation>
    </message>
    <message>
        <source>%1. %2 are free in %3, and the repaired file takes %4.</source>
        <translation>%1. %2 sont libres dans %3, et le fichier réparé en demande %4.</translation>
    </message>
    <message>
        <source>%1. %2 are free in %3.</source>
        <translation>%1. %2 sont libres dans %3.</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1 : %2 (%3)</translation>
    </message>
    <message>
        <source>%1: %2; %3</source>
        <translation>%1 : %2 ; %3</translation>
    </message>
    <message>
        <source>%1: as it was</source>
        <translation>%1 : comme à l’origine</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1 ; %2</translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s)</source>
        <translation><numerusform>%n octet</numerusform><numerusform>%n octets</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s) could not be read; zeros stand in their place</source>
        <translation><numerusform>%n octet n’a pas pu être lu ; un zéro le remplace</numerusform><numerusform>%n octets n’ont pas pu être lus ; des zéros les remplacent</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n byte(s) of the damaged file could not be read, the first at byte %1. What lies there is missing from the repaired film.</source>
        <translation><numerusform>%n octet du fichier endommagé n’a pas pu être lu, à la position %1. Ce qui s’y trouve manque dans le film réparé.</numerusform><numerusform>%n octets du fichier endommagé n’ont pas pu être lus, le premier à la position %1. Ce qui s’y trouve manque dans le film réparé.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s)</source>
        <translation><numerusform>%n bloc</numerusform><numerusform>%n blocs</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) hurt</source>
        <translation><numerusform>%n bloc abîmé</numerusform><numerusform>%n blocs abîmés</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) lost</source>
        <translation><numerusform>%n bloc perdu</numerusform><numerusform>%n blocs perdus</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n chunk(s) more than are kept of a film of this size</source>
        <translation><numerusform>%n bloc de plus que ce qui est conservé d’un film de cette taille</numerusform><numerusform>%n blocs de plus que ce qui est conservé d’un film de cette taille</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n cut short</source>
        <translation><numerusform>%n écourté</numerusform><numerusform>%n écourtés</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n damaged</source>
        <translation><numerusform>%n abîmé</numerusform><numerusform>%n abîmés</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n damaged place(s). Point at one to see what happened there.</source>
        <translation><numerusform>%n endroit endommagé. Pointez-le pour en savoir plus.</numerusform><numerusform>%n endroits endommagés. Pointez-en un pour en savoir plus.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n film(s) chosen</source>
        <translation><numerusform>%n film choisi</numerusform><numerusform>%n films choisis</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n film(s) repaired, in %1.</source>
        <translation><numerusform>%n film réparé, dans %1.</numerusform><numerusform>%n films réparés, dans %1.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n lost</source>
        <translation><numerusform>%n perdu</numerusform><numerusform>%n perdus</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n mended</source>
        <translation><numerusform>%n remis en ordre</numerusform><numerusform>%n remis en ordre</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n more are told in the report.</source>
        <translation><numerusform>%n autre figure dans le rapport.</numerusform><numerusform>%n autres figurent dans le rapport.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n more here</source>
        <translation><numerusform>%n autre ici</numerusform><numerusform>%n autres ici</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s)</source>
        <translation><numerusform>%n image</numerusform><numerusform>%n images</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s) hurt</source>
        <translation><numerusform>%n image abîmée</numerusform><numerusform>%n images abîmées</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n picture(s) lost</source>
        <translation><numerusform>%n image perdue</numerusform><numerusform>%n images perdues</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s)</source>
        <translation><numerusform>%n morceau</numerusform><numerusform>%n morceaux</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n sound chunk(s) hurt</source>
        <translation><numerusform>%n bloc de son abîmé</numerusform><numerusform>%n blocs de son abîmés</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n sound chunk(s) lost</source>
        <translation><numerusform>%n bloc de son perdu</numerusform><numerusform>%n blocs de son perdus</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n stream(s) of it cannot be recognised and are left out</source>
        <translation><numerusform>%n piste n’est pas reconnaissable et est omise</numerusform><numerusform>%n pistes ne sont pas reconnaissables et sont omises</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n stream(s) whose header is lost: nothing tells what they hold</source>
        <translation><numerusform>%n piste dont l’en-tête est perdu : rien n’indique ce qu’elle contient</numerusform><numerusform>%n pistes dont l’en-tête est perdu : rien n’indique ce qu’elles contiennent</numerusform></translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message>
        <source>1 damaged place. Point at it to see what happened there.</source>
        <translation>1 endroit endommagé. Pointez-le pour en savoir plus.</translation>
    </message>
    <message>
        <source>1 MiB is 1,048,576 bytes</source>
        <translation>1 Mio correspond à 1 048 576 octets</translation>
    </message>
    <message>
        <source>1 stream of it cannot be recognised and is left out</source>
        <translation>1 piste n’est pas reconnaissable et est omise</translation>
    </message>
    <message>
        <source>A deep repair may bring back more of this film.</source>
        <translation>Une réparation avancée pourrait récupérer davantage de ce film.</translation>
    </message>
    <message>
        <source>A deep repair may still bring %1 back.</source>
        <translation>Une réparation avancée pourrait encore récupérer %1.</translation>
    </message>
    <message>
        <source>a few seconds left</source>
        <translation>encore quelques secondes</translation>
    </message>
    <message>
        <source>A file of that name is there already. Please choose another name.</source>
        <translation>Un fichier de ce nom existe déjà. Veuillez choisir un autre nom.</translation>
    </message>
    <message>
        <source>A film is being repaired. Another one can be dropped on the first page.</source>
        <translation>Un film est en cours de réparation. Vous pourrez en déposer un autre sur la première page.</translation>
    </message>
    <message>
        <source>A folder of that name is there already. Please choose another name.</source>
        <translation>Un dossier de ce nom existe déjà. Veuillez choisir un autre nom.</translation>
    </message>
    <message>
        <source>A name cannot hold a slash (/).</source>
        <translation>Un nom ne peut pas contenir de barre oblique (/).</translation>
    </message>
    <message>
        <source>a part of it is lost or hurt, the rest is there, in step</source>
        <translation>une partie est perdue ou abîmée, le reste est là, synchrone</translation>
    </message>
    <message>
        <source>A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The system says: %2.</source>
        <translation>Un film réparé se trouve dans un dossier de travail jusqu’à ce que vous l’enregistriez, et aucun n’est utilisable. Le dernier essayé est %1. Le système indique : %2.</translation>
    </message>
    <message>
        <source>A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The system says: %2. To repair this film, %3. Nothing was started, and nothing was changed in your file.</source>
        <translation>Un film réparé se trouve dans un dossier de travail jusqu’à ce que vous l’enregistriez, et aucun n’est utilisable. Le dernier essayé est %1. Le système indique : %2. Pour réparer ce film, %3. Rien n’a été commencé, et rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>À propos de %1</translation>
    </message>
    <message>
        <source>about %1 are needed</source>
        <translation>%1 environ sont nécessaires</translation>
    </message>
    <message>
        <source>about %1 left</source>
        <translation>encore %1 environ</translation>
    </message>
    <message>
        <source>about %1 minutes left</source>
        <translation>encore %1 minutes environ</translation>
    </message>
    <message>
        <source>about %1 seconds left</source>
        <translation>encore %1 secondes environ</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Add films…</source>
        <translation>Ajouter des films…</translation>
    </message>
    <message>
        <source>all film data</source>
        <translation>toutes les données</translation>
    </message>
    <message>
        <source>All films are done</source>
        <translation>Tous les films sont terminés</translation>
    </message>
    <message numerus="yes">
        <source>and %n place(s) more</source>
        <translation><numerusform>et %n autre endroit</numerusform><numerusform>et %n autres endroits</numerusform></translation>
    </message>
    <message>
        <source>another film's: %1</source>
        <translation>d’un autre film : %1</translation>
    </message>
    <message>
        <source>Another player may show it. OK opens a web page where you can get one.</source>
        <translation>Un autre lecteur y arrivera peut-être. OK ouvre une page web où vous en procurer un.</translation>
    </message>
    <message>
        <source>as it was</source>
        <translation>comme à l’origine</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>bits</source>
        <translation>bits</translation>
    </message>
    <message>
        <source>Both repairs keep the same.</source>
        <translation>Les deux réparations conservent la même chose.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Modifier…</translation>
    </message>
    <message>
        <source>channels</source>
        <translation>canaux</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Choix</translation>
    </message>
    <message>
        <source>Choose a file in the list, or type its name.</source>
        <translation>Choisissez un fichier dans la liste, ou saisissez son nom.</translation>
    </message>
    <message>
        <source>Choose a file…</source>
        <translation>Choisir un fichier…</translation>
    </message>
    <message>
        <source>Choose a film</source>
        <translation>Choisir un film</translation>
    </message>
    <message>
        <source>Choose a film…</source>
        <translation>Choisir un film…</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <source>Choose an AVI file. It is only read: nothing is changed in your file.</source>
        <translation>Choisissez un fichier AVI. Il est seulement lu : rien n’est modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>Choose another film from the same camera</source>
        <translation>Choisir un autre film du même appareil</translation>
    </message>
    <message>
        <source>Choose another…</source>
        <translation>En choisir un autre…</translation>
    </message>
    <message>
        <source>Choose films</source>
        <translation>Choisir des films</translation>
    </message>
    <message>
        <source>Choose the folder for the repaired films</source>
        <translation>Choisir le dossier des films réparés</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Choisi</translation>
    </message>
    <message>
        <source>Click to see the result</source>
        <translation>Cliquez pour voir le résultat</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Close the help</source>
        <translation>Fermer l’aide</translation>
    </message>
    <message>
        <source>codec</source>
        <translation>codec</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Comparer</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>Content of %1</source>
        <translation>Contenu de %1</translation>
    </message>
    <message>
        <source>Copy report</source>
        <translation>Copier le rapport</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Créer</translation>
    </message>
    <message>
        <source>cut off</source>
        <translation>coupé</translation>
    </message>
    <message>
        <source>Damage picture</source>
        <translation>Image des dégâts</translation>
    </message>
    <message>
        <source>Damage:</source>
        <translation>Dégâts :</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Données</translation>
    </message>
    <message>
        <source>data</source>
        <translation>données</translation>
    </message>
    <message>
        <source>Decoding</source>
        <translation>Décodage</translation>
    </message>
    <message>
        <source>Deep repair</source>
        <translation>Réparation avancée</translation>
    </message>
    <message>
        <source>Deep repair of several films</source>
        <translation>Réparation avancée de plusieurs films</translation>
    </message>
    <message>
        <source>Deep repair of several films, one after the other</source>
        <translation>Réparation avancée de plusieurs films, l’un après l’autre</translation>
    </message>
    <message>
        <source>Deep repair of your film</source>
        <translation>Réparation avancée de votre film</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Bureau</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Détails</translation>
    </message>
    <message>
        <source>Do not save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>doubled</source>
        <translation>en double</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Téléchargements</translation>
    </message>
    <message>
        <source>Drop an AVI file here</source>
        <translation>Déposez un fichier AVI ici</translation>
    </message>
    <message>
        <source>en_US</source>
        <translation>fr_FR</translation>
    </message>
    <message>
        <source>Every byte is looked at, so this takes longer than a repair. Your file is only read.</source>
        <translation>Chaque octet est examiné ; cela prend donc plus de temps qu’une réparation. Votre fichier est seulement lu.</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nom du fichier :</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Films to be repaired</source>
        <translation>Films à réparer</translation>
    </message>
    <message>
        <source>Finishing the repaired file</source>
        <translation>Finition du fichier réparé</translation>
    </message>
    <message>
        <source>First choose the AVI file that you want to repair, or drop it on the window.</source>
        <translation>Choisissez d’abord le fichier AVI à réparer, ou déposez-le sur la fenêtre.</translation>
    </message>
    <message>
        <source>Folder name:</source>
        <translation>Nom du dossier :</translation>
    </message>
    <message>
        <source>foreign</source>
        <translation>étranger</translation>
    </message>
    <message>
        <source>format %1</source>
        <translation>format %1</translation>
    </message>
    <message>
        <source>frame rate</source>
        <translation>cadence</translation>
    </message>
    <message>
        <source>Header</source>
        <translation>En-tête</translation>
    </message>
    <message>
        <source>header</source>
        <translation>en-tête</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Hold Ctrl or Shift to select several.</source>
        <translation>Maintenez Ctrl ou Maj pour en sélectionner plusieurs.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Accueil</translation>
    </message>
    <message>
        <source>Home folder</source>
        <translation>Dossier personnel</translation>
    </message>
    <message>
        <source>hurt, kept as it is</source>
        <translation>abîmé, laissé tel quel</translation>
    </message>
    <message>
        <source>in parts at several places</source>
        <translation>en morceaux à plusieurs endroits</translation>
    </message>
    <message>
        <source>index</source>
        <translation>index</translation>
    </message>
    <message>
        <source>inserted</source>
        <translation>inséré</translation>
    </message>
    <message>
        <source>It has no sound track, or the description of its sound is lost. Only films with sound can be repaired.</source>
        <translation>Il n’a pas de piste sonore, ou la description du son est perdue. Seuls les films sonores peuvent être réparés.</translation>
    </message>
    <message>
        <source>It is made in %1.</source>
        <translation>Il est créé dans %1.</translation>
    </message>
    <message>
        <source>It is too small: only films larger than 0.5 MB (524,288 bytes) can be repaired.</source>
        <translation>Il est trop petit : seuls les films de plus de 0,5 Mo (524 288 octets) peuvent être réparés.</translation>
    </message>
    <message>
        <source>It stands on these libraries, each under a licence of its own:</source>
        <translation>Il repose sur ces bibliothèques, chacune sous sa propre licence :</translation>
    </message>
    <message>
        <source>It was saved as %1.</source>
        <translation>Il a été enregistré sous %1.</translation>
    </message>
    <message>
        <source>It was stopped.</source>
        <translation>Elle a été arrêtée.</translation>
    </message>
    <message>
        <source>Its beginning could not be read from the disk, and a film cannot be repaired without it.</source>
        <translation>Son début n’a pas pu être lu sur le disque, et un film ne peut pas être réparé sans lui.</translation>
    </message>
    <message>
        <source>its header cannot be that of this film, and was not used</source>
        <translation>son en-tête ne peut pas être celui de ce film, et n’a pas été utilisé</translation>
    </message>
    <message>
        <source>Its pictures are not compressed. Only films with compressed pictures can be repaired.</source>
        <translation>Ses images ne sont pas compressées. Seuls les films aux images compressées peuvent être réparés.</translation>
    </message>
    <message>
        <source>Keep repairing</source>
        <translation>Continuer la réparation</translation>
    </message>
    <message>
        <source>Keep saving</source>
        <translation>Continuer l’enregistrement</translation>
    </message>
    <message>
        <source>Kept</source>
        <translation>Conservé</translation>
    </message>
    <message>
        <source>Last chosen: %1</source>
        <translation>Dernier choix : %1</translation>
    </message>
    <message>
        <source>Last saved</source>
        <translation>Enregistré</translation>
    </message>
    <message>
        <source>Leave</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Left out</source>
        <translation>Omis</translation>
    </message>
    <message>
        <source>left out</source>
        <translation>omis</translation>
    </message>
    <message>
        <source>less than %1 s</source>
        <translation>moins de %1 s</translation>
    </message>
    <message>
        <source>Licences</source>
        <translation>Licences</translation>
    </message>
    <message>
        <source>Look at it here, then save it to a folder of your choice.</source>
        <translation>Regardez-le ici, puis enregistrez-le dans le dossier de votre choix.</translation>
    </message>
    <message>
        <source>Look for an update</source>
        <translation>Rechercher une mise à jour</translation>
    </message>
    <message>
        <source>Looks at every byte of the film, for those that Repair cannot mend</source>
        <translation>Examine chaque octet du film, pour ceux que « Réparer » ne peut pas remettre en ordre</translation>
    </message>
    <message>
        <source>lost</source>
        <translation>perdu</translation>
    </message>
    <message>
        <source>made again: %1</source>
        <translation>recréés : %1</translation>
    </message>
    <message>
        <source>mended</source>
        <translation>remis en ordre</translation>
    </message>
    <message>
        <source>MiB</source>
        <translation>Mio</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>manquant</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Couper le son</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Son coupé</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Name of the new folder</source>
        <translation>Nom du nouveau dossier</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <source>New folder…</source>
        <translation>Nouveau dossier…</translation>
    </message>
    <message>
        <source>No file chosen yet</source>
        <translation>Aucun fichier choisi</translation>
    </message>
    <message>
        <source>No film chosen yet</source>
        <translation>Aucun film choisi</translation>
    </message>
    <message>
        <source>no film data</source>
        <translation>aucune donnée</translation>
    </message>
    <message>
        <source>No films yet. Add some to repair them one after the other.</source>
        <translation>Aucun film pour l’instant. Ajoutez-en pour les réparer l’un après l’autre.</translation>
    </message>
    <message>
        <source>No folder chosen yet</source>
        <translation>Aucun dossier choisi</translation>
    </message>
    <message>
        <source>No picture and no sound is lost.</source>
        <translation>Aucune image ni aucun son n’est perdu.</translation>
    </message>
    <message>
        <source>No picture could be kept</source>
        <translation>Aucune image n’a pu être conservée</translation>
    </message>
    <message>
        <source>No picture was kept</source>
        <translation>Aucune image conservée</translation>
    </message>
    <message>
        <source>No preview in this build. You can save the film and open it in a player.</source>
        <translation>Cette version du programme n’a pas d’aperçu. Vous pouvez enregistrer le film et l’ouvrir dans un lecteur.</translation>
    </message>
    <message>
        <source>No web browser could be started, so the page is shown here.</source>
        <translation>Aucun navigateur web n’a pu être lancé ; la page est donc affichée ici.</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucune</translation>
    </message>
    <message>
        <source>Normal and deep repair</source>
        <translation>Réparation normale et avancée</translation>
    </message>
    <message>
        <source>Normal repair</source>
        <translation>Réparation normale</translation>
    </message>
    <message>
        <source>Not all films are done</source>
        <translation>Tous les films ne sont pas terminés</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Pas maintenant</translation>
    </message>
    <message>
        <source>not of this film, left out</source>
        <translation>étranger au film, omis</translation>
    </message>
    <message>
        <source>not rescued from the disk</source>
        <translation>non récupéré du disque</translation>
    </message>
    <message>
        <source>Not whole</source>
        <translation>Incomplet</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>rien</translation>
    </message>
    <message>
        <source>Nothing could be brought back</source>
        <translation>Rien n’a pu être récupéré</translation>
    </message>
    <message numerus="yes">
        <source>Nothing could be made of %n film(s).</source>
        <translation><numerusform>Rien n’a pu être tiré de %n film.</numerusform><numerusform>Rien n’a pu être tiré de %n films.</numerusform></translation>
    </message>
    <message>
        <source>Nothing is lost</source>
        <translation>Rien n’est perdu</translation>
    </message>
    <message>
        <source>Nothing is wrong with this film.</source>
        <translation>Ce film n’a aucun défaut.</translation>
    </message>
    <message>
        <source>Nothing of this film can be brought back.</source>
        <translation>Rien de ce film ne peut être récupéré.</translation>
    </message>
    <message>
        <source>Nothing was changed in your file.</source>
        <translation>Rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>Nothing was left behind, and the repaired film is still here: you can save it to another place.</source>
        <translation>Rien n’a été laissé derrière, et le film réparé est toujours ici : vous pouvez l’enregistrer ailleurs.</translation>
    </message>
    <message>
        <source>Nothing was wrong</source>
        <translation>Il n’y avait aucun défaut</translation>
    </message>
    <message numerus="yes">
        <source>Of %n picture(s), only zeros are left.</source>
        <translation><numerusform>De %n image, il ne reste que des zéros.</numerusform><numerusform>De %n images, il ne reste que des zéros.</numerusform></translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>On the next page you can look at it and save it. Nothing was changed in your damaged file.</source>
        <translation>À la page suivante, vous pouvez le regarder et l’enregistrer. Rien n’a été modifié dans votre fichier endommagé.</translation>
    </message>
    <message>
        <source>One film at a time, please.</source>
        <translation>Un seul film à la fois, s’il vous plaît.</translation>
    </message>
    <message>
        <source>One is repaired after the other. Your files are only read.</source>
        <translation>Ils sont réparés l’un après l’autre. Vos fichiers sont seulement lus.</translation>
    </message>
    <message>
        <source>Only a file of this computer can be dropped here.</source>
        <translation>Seul un fichier de cet ordinateur peut être déposé ici.</translation>
    </message>
    <message>
        <source>Only files whose names end in %1 can be chosen.</source>
        <translation>Seuls les fichiers dont le nom se termine par %1 peuvent être choisis.</translation>
    </message>
    <message>
        <source>Only films whose names end in .avi, .divx or .xvid can be repaired here. Nothing was changed in your file.</source>
        <translation>Seuls les films dont le nom se termine par .avi, .divx ou .xvid peuvent être réparés ici. Rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Open folder</source>
        <translation>Ouvrir le dossier</translation>
    </message>
    <message>
        <source>opening</source>
        <translation>ouverture</translation>
    </message>
    <message>
        <source>Other film</source>
        <translation>Autre film</translation>
    </message>
    <message>
        <source>overwritten</source>
        <translation>écrasé</translation>
    </message>
    <message>
        <source>partly lost, and made again</source>
        <translation>en partie perdu, et refait</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Place in the film</source>
        <translation>Position dans le film</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Emplacements</translation>
    </message>
    <message>
        <source>plain</source>
        <translation>brut</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Please answer the message first.</source>
        <translation>Veuillez d’abord répondre au message.</translation>
    </message>
    <message>
        <source>Please choose the film itself.</source>
        <translation>Veuillez choisir le film lui-même.</translation>
    </message>
    <message>
        <source>Please choose the film itself. It leads to %1.</source>
        <translation>Veuillez choisir le film lui-même. Le lien mène à %1.</translation>
    </message>
    <message>
        <source>Please go back with Home and repair the film again.</source>
        <translation>Revenez avec « Accueil » et réparez le film à nouveau.</translation>
    </message>
    <message>
        <source>Please leave the disk connected until this is done.</source>
        <translation>Laissez le disque connecté jusqu’à la fin, s’il vous plaît.</translation>
    </message>
    <message>
        <source>Please type a name.</source>
        <translation>Veuillez saisir un nom.</translation>
    </message>
    <message>
        <source>Press Home first: a film is dropped on the first page.</source>
        <translation>Appuyez d’abord sur « Accueil » : un film se dépose sur la première page.</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Preview of the film, not playing</source>
        <translation>Aperçu du film, à l’arrêt</translation>
    </message>
    <message>
        <source>Preview of the film, paused</source>
        <translation>Aperçu du film, en pause</translation>
    </message>
    <message>
        <source>Preview of the film, playing</source>
        <translation>Aperçu du film, en lecture</translation>
    </message>
    <message>
        <source>Preview, no film yet</source>
        <translation>Aperçu, pas encore de film</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>put together again</source>
        <translation>réassemblé</translation>
    </message>
    <message>
        <source>reading headers</source>
        <translation>lecture des en-têtes</translation>
    </message>
    <message>
        <source>Reading the damaged film: %1 of %2</source>
        <translation>Lecture du film endommagé : %1 sur %2</translation>
    </message>
    <message>
        <source>Reading this folder…</source>
        <translation>Lecture du dossier…</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Réparer</translation>
    </message>
    <message>
        <source>Repair a film that no longer plays</source>
        <translation>Réparer un film qui ne se lit plus</translation>
    </message>
    <message>
        <source>Repaired in part</source>
        <translation>Réparé en partie</translation>
    </message>
    <message>
        <source>Repairing your film</source>
        <translation>Réparation de votre film</translation>
    </message>
    <message>
        <source>Repairs damaged AVI films on this computer. Your films are only read.</source>
        <translation>Répare les films AVI endommagés sur cet ordinateur. Vos films sont seulement lus.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Replace what is there?</source>
        <translation>Remplacer ce qui s’y trouve ?</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Résultat</translation>
    </message>
    <message>
        <source>sample rate</source>
        <translation>fréquence d’échantillonnage</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Save the repaired film</source>
        <translation>Enregistrer le film réparé</translation>
    </message>
    <message>
        <source>Save the report beside it</source>
        <translation>Enregistrer le rapport à côté</translation>
    </message>
    <message>
        <source>Saved into</source>
        <translation>Enregistrés dans</translation>
    </message>
    <message>
        <source>Saves to  %1</source>
        <translation>Enregistré dans  %1</translation>
    </message>
    <message>
        <source>Save…</source>
        <translation>Enregistrer…</translation>
    </message>
    <message>
        <source>Saving is done</source>
        <translation>Enregistrement terminé</translation>
    </message>
    <message>
        <source>Saving your film</source>
        <translation>Enregistrement de votre film</translation>
    </message>
    <message>
        <source>searching</source>
        <translation>recherche</translation>
    </message>
    <message>
        <source>See the result</source>
        <translation>Voir le résultat</translation>
    </message>
    <message numerus="yes">
        <source>sent as if it were text, which put %n byte(s) in; they are left out</source>
        <translation><numerusform>transféré comme du texte, ce qui a ajouté %n octet ; il est omis</numerusform><numerusform>transféré comme du texte, ce qui a ajouté %n octets ; ils sont omis</numerusform></translation>
    </message>
    <message>
        <source>Several films</source>
        <translation>Plusieurs films</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>size</source>
        <translation>taille</translation>
    </message>
    <message>
        <source>Some of it is lost. Look at what was kept here, then save it to a folder of your choice.</source>
        <translation>Une partie est perdue. Regardez ici ce qui a été conservé, puis enregistrez-le dans le dossier de votre choix.</translation>
    </message>
    <message>
        <source>Some of it is lost. On the next page you can see what was kept, look at it and save it. Nothing was changed in your damaged file.</source>
        <translation>Une partie est perdue. À la page suivante, vous verrez ce qui a été conservé, et pourrez le regarder et l’enregistrer. Rien n’a été modifié dans votre fichier endommagé.</translation>
    </message>
    <message>
        <source>Something is lost</source>
        <translation>Une partie est perdue</translation>
    </message>
    <message>
        <source>Something of that name has come to be there.</source>
        <translation>Quelque chose de ce nom est apparu entre-temps.</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Son</translation>
    </message>
    <message>
        <source>sound</source>
        <translation>son</translation>
    </message>
    <message>
        <source>Sound on</source>
        <translation>Rétablir le son</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
    <message>
        <source>Starting…</source>
        <translation>Démarrage…</translation>
    </message>
    <message>
        <source>State</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Stay here</source>
        <translation>Rester ici</translation>
    </message>
    <message>
        <source>Step %1 of 3: %2</source>
        <translation>Étape %1 sur 3 : %2</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Stop and leave</source>
        <translation>Arrêter et quitter</translation>
    </message>
    <message>
        <source>Stop preview</source>
        <translation>Arrêter l’aperçu</translation>
    </message>
    <message>
        <source>Stop saving</source>
        <translation>Arrêter l’enregistrement</translation>
    </message>
    <message>
        <source>Stop saving?</source>
        <translation>Arrêter l’enregistrement ?</translation>
    </message>
    <message>
        <source>Stop the repair</source>
        <translation>Arrêter la réparation</translation>
    </message>
    <message>
        <source>Stop the repair?</source>
        <translation>Arrêter la réparation ?</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>Take it out of the list</source>
        <translation>Le retirer de la liste</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>text</source>
        <translation>texte</translation>
    </message>
    <message>
        <source>That folder already holds a file repaired.avi. Replace it?</source>
        <translation>Ce dossier contient déjà un fichier repaired.avi. Le remplacer ?</translation>
    </message>
    <message>
        <source>That is a folder. Now choose a file in it.</source>
        <translation>C’est un dossier. Choisissez maintenant un fichier dedans.</translation>
    </message>
    <message>
        <source>That is a folder. Now type a name for the file.</source>
        <translation>C’est un dossier. Saisissez maintenant un nom pour le fichier.</translation>
    </message>
    <message>
        <source>That is not an ordinary file. Please choose another.</source>
        <translation>Ce n’est pas un fichier ordinaire. Veuillez en choisir un autre.</translation>
    </message>
    <message>
        <source>That name is taken already. Please choose another.</source>
        <translation>Ce nom est déjà pris. Veuillez en choisir un autre.</translation>
    </message>
    <message>
        <source>That name is too long. Please choose a shorter one.</source>
        <translation>Ce nom est trop long. Veuillez en choisir un plus court.</translation>
    </message>
    <message>
        <source>That would overwrite the damaged file itself. Please choose another name or folder.</source>
        <translation>Cela écraserait le fichier endommagé lui-même. Veuillez choisir un autre nom ou un autre dossier.</translation>
    </message>
    <message>
        <source>That would overwrite the damaged film itself. Please choose another name or folder.</source>
        <translation>Cela écraserait le film endommagé lui-même. Veuillez choisir un autre nom ou un autre dossier.</translation>
    </message>
    <message>
        <source>The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in your file.</source>
        <translation>Le début du fichier ne ressemble pas à un fichier AVI, il n’y a donc rien à réparer. Rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>the code is mended</source>
        <translation>le code est corrigé</translation>
    </message>
    <message>
        <source>The copy is incomplete: %1</source>
        <translation>La copie est incomplète : %1</translation>
    </message>
    <message>
        <source>The damaged file</source>
        <translation>Le fichier endommagé</translation>
    </message>
    <message>
        <source>The damaged file holds neither pictures nor sound. There is nothing worth saving.</source>
        <translation>Le fichier endommagé ne contient ni images ni son. Il n’y a rien qui vaille d’être enregistré.</translation>
    </message>
    <message>
        <source>The damaged file holds no pictures. If you save it, you get the sound alone.</source>
        <translation>Le fichier endommagé ne contient pas d’images. Si vous l’enregistrez, vous n’aurez que le son.</translation>
    </message>
    <message>
        <source>The deep repair could not be started. The system says: %1.</source>
        <translation>La réparation avancée n’a pas pu être lancée. Le système indique : %1.</translation>
    </message>
    <message>
        <source>The deep repair did not come to its end</source>
        <translation>La réparation avancée n’est pas allée à son terme</translation>
    </message>
    <message>
        <source>The deep repair is still at work</source>
        <translation>La réparation avancée est encore en cours</translation>
    </message>
    <message>
        <source>The deep repair keeps more than the normal one.</source>
        <translation>La réparation avancée conserve plus que la normale.</translation>
    </message>
    <message>
        <source>The descriptions at the beginning of the damaged file are there, but the pictures are not. The next page tells what was kept. Nothing was changed in your damaged file.</source>
        <translation>Les descriptions au début du fichier endommagé sont là, mais pas les images. La page suivante indique ce qui a été conservé. Rien n’a été modifié dans votre fichier endommagé.</translation>
    </message>
    <message>
        <source>The descriptions of pictures and sound at its beginning are lost or damaged.</source>
        <translation>Les descriptions des images et du son à son début sont perdues ou endommagées.</translation>
    </message>
    <message>
        <source>The disk is taking in the last bytes…</source>
        <translation>Le disque reçoit les derniers octets…</translation>
    </message>
    <message>
        <source>The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another place.</source>
        <translation>Le disque ou le serveur ne répond pas. Rien n’a été modifié. Réessayez quand il sera de retour, ou choisissez un autre emplacement.</translation>
    </message>
    <message>
        <source>The disk or server does not answer. Please try again when it is back, or choose another place.</source>
        <translation>Le disque ou le serveur ne répond pas. Réessayez quand il sera de retour, ou choisissez un autre emplacement.</translation>
    </message>
    <message>
        <source>The film cannot be saved there</source>
        <translation>Le film ne peut pas être enregistré là</translation>
    </message>
    <message>
        <source>The film does not answer</source>
        <translation>Le film ne répond pas</translation>
    </message>
    <message>
        <source>The film is not there any more.</source>
        <translation>Le film n’est plus là.</translation>
    </message>
    <message>
        <source>The film is saved</source>
        <translation>Le film est enregistré</translation>
    </message>
    <message>
        <source>The film was not saved</source>
        <translation>Le film n’a pas été enregistré</translation>
    </message>
    <message>
        <source>The film was not saved whole</source>
        <translation>Le film n’a pas été enregistré en entier</translation>
    </message>
    <message>
        <source>the film's own</source>
        <translation>celui du film</translation>
    </message>
    <message>
        <source>the film's own: %1</source>
        <translation>du film lui-même : %1</translation>
    </message>
    <message>
        <source>The folder could not be made: %1.</source>
        <translation>Le dossier n’a pas pu être créé : %1.</translation>
    </message>
    <message>
        <source>The header of this film is lost</source>
        <translation>L’en-tête de ce film est perdu</translation>
    </message>
    <message>
        <source>The header says how pictures and sound are to be shown. Another film from the same camera, one that plays, has the same one and can lend it. It is not changed. Have you got such a film?</source>
        <translation>L’en-tête indique comment rendre les images et le son. Un autre film du même appareil, qui se lit bien, a le même et peut le prêter. Il n’est pas modifié. Avez-vous un tel film ?</translation>
    </message>
    <message>
        <source>The last part is still being written. This takes only a moment.</source>
        <translation>La dernière partie est encore en cours d’écriture. Cela ne prend qu’un instant.</translation>
    </message>
    <message>
        <source>The normal repair does not take this film.</source>
        <translation>La réparation normale n’accepte pas ce film.</translation>
    </message>
    <message>
        <source>The normal repair keeps more; it also takes what only looks like a part of the film.</source>
        <translation>La réparation normale conserve plus ; elle prend aussi ce qui ressemble seulement à une partie du film.</translation>
    </message>
    <message>
        <source>The picture of this film cannot be shown here, only its sound be heard. You can save it and try another player.</source>
        <translation>L’image de ce film ne peut pas être affichée ici, seul le son est audible. Vous pouvez l’enregistrer et essayer un autre lecteur.</translation>
    </message>
    <message>
        <source>the pictures go on</source>
        <translation>les images continuent</translation>
    </message>
    <message>
        <source>The preview cannot open this film. You can save it, but another player may not open it either.</source>
        <translation>L’aperçu ne peut pas ouvrir ce film. Vous pouvez l’enregistrer, mais un autre lecteur ne l’ouvrira peut-être pas non plus.</translation>
    </message>
    <message>
        <source>The program that worked on it ended without a word.</source>
        <translation>Le programme qui y travaillait s’est terminé sans un mot.</translation>
    </message>
    <message>
        <source>The program that worked on it was ended before it was done (signal %1).</source>
        <translation>Le programme qui y travaillait a été interrompu avant la fin (signal %1).</translation>
    </message>
    <message>
        <source>the program was asked to end.</source>
        <translation>le programme a reçu l’ordre de se terminer.</translation>
    </message>
    <message>
        <source>The program zelvo-avi, which does the deep repair and lies beside this one, is missing. Installing Zelvo AVI Repair again brings it back.</source>
        <translation>Le programme zelvo-avi, qui effectue la réparation avancée et se trouve à côté de celui-ci, est absent. Réinstaller Zelvo AVI Repair le rétablit.</translation>
    </message>
    <message>
        <source>the program zelvo-avi-decoder, which could have found more, is missing or did not last</source>
        <translation>le programme zelvo-avi-decoder, qui aurait pu en trouver plus, est absent ou n’a pas tenu</translation>
    </message>
    <message>
        <source>The reason: %1</source>
        <translation>La raison (en anglais) : %1</translation>
    </message>
    <message>
        <source>The repair was stopped before the beginning of the film had been read.</source>
        <translation>La réparation a été arrêtée avant que le début du film ait été lu.</translation>
    </message>
    <message>
        <source>The repaired file could not be written</source>
        <translation>Le fichier réparé n’a pas pu être écrit</translation>
    </message>
    <message>
        <source>the repaired file is no longer there.</source>
        <translation>le fichier réparé n’est plus là.</translation>
    </message>
    <message>
        <source>The repaired file was saved as %1.</source>
        <translation>Le fichier réparé a été enregistré sous %1.</translation>
    </message>
    <message>
        <source>The repaired film</source>
        <translation>Le film réparé</translation>
    </message>
    <message>
        <source>The repaired film could not be read: %1.</source>
        <translation>Le film réparé n’a pas pu être lu : %1.</translation>
    </message>
    <message>
        <source>The repaired film is copied to where you want it.</source>
        <translation>Le film réparé est copié là où vous le souhaitez.</translation>
    </message>
    <message>
        <source>The repaired film is no longer there, or not whole any more.</source>
        <translation>Le film réparé n’est plus là, ou plus entier.</translation>
    </message>
    <message>
        <source>The repaired film is not saved</source>
        <translation>Le film réparé n’est pas enregistré</translation>
    </message>
    <message>
        <source>The report could not be saved beside it: %1.</source>
        <translation>Le rapport n’a pas pu être enregistré à côté : %1.</translation>
    </message>
    <message>
        <source>The report lies beside it: %1.</source>
        <translation>Le rapport se trouve à côté : %1.</translation>
    </message>
    <message>
        <source>the size is mended</source>
        <translation>la taille est corrigée</translation>
    </message>
    <message>
        <source>the sound goes on</source>
        <translation>le son continue</translation>
    </message>
    <message>
        <source>The system has no room for more work at once. Closing other programs helps.</source>
        <translation>Le système n’a plus de place pour d’autres tâches simultanées. Fermer d’autres programmes aide.</translation>
    </message>
    <message>
        <source>The system says: %1.</source>
        <translation>Le système indique : %1.</translation>
    </message>
    <message>
        <source>The text of that licence is in %1.</source>
        <translation>Le texte de cette licence se trouve dans %1.</translation>
    </message>
    <message>
        <source>the time of what is lost is filled</source>
        <translation>le temps de ce qui est perdu est comblé</translation>
    </message>
    <message>
        <source>The updater is not installed. Updates come from where the program was installed from.</source>
        <translation>Le programme de mise à jour n’est pas installé. Les mises à jour viennent de là où le programme a été installé.</translation>
    </message>
    <message>
        <source>The working folder cannot be used</source>
        <translation>Le dossier de travail est inutilisable</translation>
    </message>
    <message>
        <source>There are no folders in here.</source>
        <translation>Il n’y a pas de dossiers ici.</translation>
    </message>
    <message>
        <source>There is a file “%1” already. Replacing it deletes what it holds.</source>
        <translation>Il existe déjà un fichier « %1 ». Le remplacer supprime son contenu.</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>Il n’y a pas de fichier %1.</translation>
    </message>
    <message>
        <source>There is no folder %1.</source>
        <translation>Il n’y a pas de dossier %1.</translation>
    </message>
    <message>
        <source>There is no place for the repaired film</source>
        <translation>Il n’y a pas de place pour le film réparé</translation>
    </message>
    <message>
        <source>There is no such film. It may have been moved, renamed or removed.</source>
        <translation>Ce film n’existe pas. Il a peut-être été déplacé, renommé ou supprimé.</translation>
    </message>
    <message>
        <source>There is no working folder that can be used.</source>
        <translation>Aucun dossier de travail n’est utilisable.</translation>
    </message>
    <message>
        <source>There is not enough memory. Closing other programs helps.</source>
        <translation>Il n’y a pas assez de mémoire. Fermer d’autres programmes aide.</translation>
    </message>
    <message>
        <source>There is not enough room: the film takes %1, and %2 are free in %3.</source>
        <translation>Il n’y a pas assez de place : le film demande %1, et %2 sont libres dans %3.</translation>
    </message>
    <message>
        <source>There is nothing to choose in this folder.</source>
        <translation>Il n’y a rien à choisir dans ce dossier.</translation>
    </message>
    <message>
        <source>there twice, left out</source>
        <translation>en double, omis</translation>
    </message>
    <message>
        <source>This can take a few minutes for a long film. You can go on working meanwhile.</source>
        <translation>Cela peut prendre quelques minutes pour un long film. Vous pouvez continuer à travailler pendant ce temps.</translation>
    </message>
    <message>
        <source>This cannot be chosen</source>
        <translation>Ceci ne peut pas être choisi</translation>
    </message>
    <message>
        <source>This film cannot be read</source>
        <translation>Ce film ne peut pas être lu</translation>
    </message>
    <message>
        <source>This film cannot be repaired</source>
        <translation>Ce film ne peut pas être réparé</translation>
    </message>
    <message>
        <source>This film cannot be shown here</source>
        <translation>Ce film ne peut pas être affiché ici</translation>
    </message>
    <message>
        <source>This film is no longer there</source>
        <translation>Ce film n’est plus là</translation>
    </message>
    <message>
        <source>This film was damaged; %1.</source>
        <translation>Ce film était endommagé ; %1.</translation>
    </message>
    <message>
        <source>This film was damaged; all of its pictures and sound are there again.</source>
        <translation>Ce film était endommagé ; toutes ses images et tout son son sont de nouveau là.</translation>
    </message>
    <message>
        <source>This folder cannot be read: %1.</source>
        <translation>Ce dossier ne peut pas être lu : %1.</translation>
    </message>
    <message>
        <source>This folder cannot be used</source>
        <translation>Ce dossier est inutilisable</translation>
    </message>
    <message>
        <source>This is free software: you may use it, pass it on and change it under the terms of the GNU General Public License, version 3 or any later version. It comes without any warranty.</source>
        <translation>Ceci est un logiciel libre : vous pouvez l’utiliser, le transmettre et le modifier selon les termes de la GNU General Public License, version 3 ou toute version ultérieure. Il est fourni sans aucune garantie.</translation>
    </message>
    <message>
        <source>This is not an AVI film</source>
        <translation>Ce n’est pas un film AVI</translation>
    </message>
    <message>
        <source>This is only a link to a film</source>
        <translation>Ce n’est qu’un lien vers un film</translation>
    </message>
    <message>
        <source>This page is not on this computer. Its address is:

%1</source>
        <translation>Cette page n’est pas sur cet ordinateur. Son adresse est :

%1</translation>
    </message>
    <message>
        <source>This version does not know where to look. Updates come from where it was installed from.</source>
        <translation>Cette version ne sait pas où chercher. Les mises à jour viennent de là où elle a été installée.</translation>
    </message>
    <message>
        <source>Tip:</source>
        <translation>Conseil :</translation>
    </message>
    <message>
        <source>To the folder above (Backspace)</source>
        <translation>Vers le dossier parent (Retour arrière)</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transfert</translation>
    </message>
    <message>
        <source>Try a deep repair</source>
        <translation>Essayer une réparation avancée</translation>
    </message>
    <message>
        <source>uncompressed</source>
        <translation>non compressé</translation>
    </message>
    <message>
        <source>under 1 % of it</source>
        <translation>moins de 1 %</translation>
    </message>
    <message>
        <source>Unreadable</source>
        <translation>Illisible</translation>
    </message>
    <message>
        <source>unreadable</source>
        <translation>illisible</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Remonter</translation>
    </message>
    <message>
        <source>Use a film of the same camera…</source>
        <translation>Utiliser un film du même appareil…</translation>
    </message>
    <message>
        <source>Use this film</source>
        <translation>Utiliser ce film</translation>
    </message>
    <message>
        <source>Use this folder</source>
        <translation>Utiliser ce dossier</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Vidéo</translation>
    </message>
    <message>
        <source>video</source>
        <translation>vidéo</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>Vidéos</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>waiting for the disk</source>
        <translation>attente du disque</translation>
    </message>
    <message>
        <source>Waiting until the repair before this one has ended. Its last step cannot be cut short.</source>
        <translation>En attente de la fin de la réparation précédente. Sa dernière étape ne peut pas être écourtée.</translation>
    </message>
    <message>
        <source>weighing what was found</source>
        <translation>examen de ce qui a été trouvé</translation>
    </message>
    <message>
        <source>What happened where</source>
        <translation>Ce qui s’est passé, et où</translation>
    </message>
    <message>
        <source>What is in the folder by now stays there. You can save the film again at any time.</source>
        <translation>Ce qui se trouve déjà dans le dossier y reste. Vous pouvez enregistrer le film à nouveau à tout moment.</translation>
    </message>
    <message>
        <source>what is left is kept, the time of what is lost is filled</source>
        <translation>ce qui reste est conservé, le temps de ce qui est perdu est comblé</translation>
    </message>
    <message>
        <source>What it wrote is not there, or cannot be read.</source>
        <translation>Ce qu’il a écrit n’est pas là, ou ne peut pas être lu.</translation>
    </message>
    <message>
        <source>What the normal repair would keep could not be found out.</source>
        <translation>Ce que conserverait la réparation normale n’a pas pu être déterminé.</translation>
    </message>
    <message>
        <source>What was repaired so far is given up. Nothing was changed in your file.</source>
        <translation>Ce qui a été réparé jusqu’ici est abandonné. Rien n’a été modifié dans votre fichier.</translation>
    </message>
    <message>
        <source>When you leave without saving it, it is gone. Your damaged film stays.</source>
        <translation>Si vous quittez sans l’enregistrer, il disparaît. Votre film endommagé reste.</translation>
    </message>
    <message>
        <source>When you leave, it is stopped, and nothing comes of it.</source>
        <translation>Si vous quittez, elle est arrêtée et il n’en reste rien.</translation>
    </message>
    <message>
        <source>When you leave, those that are not done yet are left out. Films that are done stay where they were saved.</source>
        <translation>Si vous quittez, ceux qui ne sont pas terminés sont abandonnés. Les films terminés restent là où ils ont été enregistrés.</translation>
    </message>
    <message>
        <source>Where should it be saved?</source>
        <translation>Où l’enregistrer ?</translation>
    </message>
    <message>
        <source>Why</source>
        <translation>Pourquoi</translation>
    </message>
    <message>
        <source>With what the normal repair keeps of the same film</source>
        <translation>Avec ce que la réparation normale conserve du même film</translation>
    </message>
    <message>
        <source>Working</source>
        <translation>En cours</translation>
    </message>
    <message>
        <source>Working folder: %1 (%2)</source>
        <translation>Dossier de travail : %1 (%2)</translation>
    </message>
    <message>
        <source>writing</source>
        <translation>écriture</translation>
    </message>
    <message>
        <source>Writing failed: %1.</source>
        <translation>L’écriture a échoué : %1.</translation>
    </message>
    <message>
        <source>Writing the repaired film: %1 of %2</source>
        <translation>Écriture du film réparé : %1 sur %2</translation>
    </message>
    <message>
        <source>wrong code</source>
        <translation>code erroné</translation>
    </message>
    <message>
        <source>wrong size</source>
        <translation>taille erronée</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>oui</translation>
    </message>
    <message>
        <source>You may not read that file. Please choose another, or ask its owner.</source>
        <translation>Vous n’avez pas le droit de lire ce fichier. Choisissez-en un autre, ou demandez à son propriétaire.</translation>
    </message>
    <message>
        <source>You may not save in %1. Please choose another folder.</source>
        <translation>Vous n’avez pas le droit d’enregistrer dans %1. Veuillez choisir un autre dossier.</translation>
    </message>
    <message>
        <source>Your film was repaired</source>
        <translation>Votre film a été réparé</translation>
    </message>
    <message>
        <source>Your film was repaired in part</source>
        <translation>Votre film a été réparé en partie</translation>
    </message>
    <message>
        <source>Your repaired film</source>
        <translation>Votre film réparé</translation>
    </message>
    <message>
        <source>Your repaired film will be shown here.</source>
        <translation>Votre film réparé s’affichera ici.</translation>
    </message>
    <message>
        <source>zeroed</source>
        <translation>mis à zéro</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>« %1 »</translation>
    </message>
</context>
</TS>
