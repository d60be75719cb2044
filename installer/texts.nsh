; What the set-up program says beside the wizard's own texts, in its three languages.

!macro Text name english german french
  LangString ${name} ${LANG_ENGLISH} "${english}"
  LangString ${name} ${LANG_GERMAN} "${german}"
  LangString ${name} ${LANG_FRENCH} "${french}"
!macroend

!insertmacro Text TEXT_CONSOLE "Console" "Konsole" "Console"
!insertmacro Text TEXT_CONSOLE_ABOUT \
  "The program, its languages and its help." \
  "Das Programm, seine Sprachen und seine Hilfe." \
  "Le programme, ses langues et son aide."
!insertmacro Text TEXT_DEMO "Demo server" "Demo-Server" "Serveur de démonstration"
!insertmacro Text TEXT_DEMO_ABOUT \
  "A stand-in for KSPassThru.dll with a small building inside, to try the console without a server." \
  "Ein Ersatz für KSPassThru.dll mit den Daten eines kleinen Beispielgebäudes, um die Konsole ohne Server auszuprobieren." \
  "Un substitut de KSPassThru.dll qui simule un petit bâtiment, pour essayer la console sans serveur."
!insertmacro Text TEXT_IN_USE \
  "The console or its help is open ($InUse cannot be replaced).$\n$\nClose it in every session of this computer, then retry." \
  "Die Konsole oder ihre Hilfe ist geöffnet ($InUse kann nicht ersetzt werden).$\n$\nSchließen Sie sie in allen \
Sitzungen dieses Computers und klicken Sie dann auf „Wiederholen“." \
  "La console ou son aide est ouverte ($InUse ne peut pas être remplacé).$\n$\nFermez-la dans toutes les sessions de \
cet ordinateur, puis recommencez."
!insertmacro Text TEXT_OTHER_LIBRARY \
  "The folder holds a KSPassThru.dll that is not the demo server's. It is kept, and the demo server is left out." \
  "Der Ordner enthält eine KSPassThru.dll, die nicht die des Demo-Servers ist. Sie bleibt, und der Demo-Server wird \
nicht installiert." \
  "Le dossier contient une KSPassThru.dll qui n'est pas celle du serveur de démonstration. Elle est conservée et le \
serveur de démonstration n'est pas installé."
!insertmacro Text TEXT_NO_LIBRARY \
  "The console is installed. Before its first start, copy the maker's KSPassThru.dll into its folder:$\r$\n$\r$\n$INSTDIR" \
  "Die Konsole ist installiert. Kopieren Sie vor dem ersten Start die KSPassThru.dll des Herstellers in ihren \
Ordner:$\r$\n$\r$\n$INSTDIR" \
  "La console est installée. Avant le premier démarrage, copiez la KSPassThru.dll du fabricant dans son \
dossier :$\r$\n$\r$\n$INSTDIR"
!insertmacro Text TEXT_INSTALLED \
  "The console is installed. It is in the Start menu." \
  "Die Konsole ist installiert. Sie steht im Startmenü unter „Orvane VANTE Event Configuration Console“." \
  "La console est installée. Elle figure dans le menu Démarrer sous « Orvane VANTE Event Configuration Console »."
!insertmacro Text TEXT_START "Start the console" "Die Konsole starten" "Lancer la console"
!insertmacro Text TEXT_NO_ADMINISTRATOR \
  "Only an administrator can install or remove the console." \
  "Nur ein Administrator kann die Konsole installieren oder deinstallieren." \
  "Seul un administrateur peut installer ou désinstaller la console."
!insertmacro Text TEXT_OLD_WINDOWS \
  "The console needs Windows 7 or later." \
  "Die Konsole erfordert Windows 7 oder höher." \
  "La console nécessite Windows 7 ou une version ultérieure."
!insertmacro Text TEXT_ALREADY_OPEN \
  "The set-up program is already open." \
  "Das Installationsprogramm ist bereits geöffnet." \
  "Le programme d'installation est déjà ouvert."
