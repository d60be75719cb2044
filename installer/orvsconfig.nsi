; The set-up program. tools/make-package compiles it, with these names:
;
;   VERSION   of the console: 1.0.0
;   STAGE     folder with files.nsh (the lists of what to install), the icon and the picture of the last page
;   OUT       the set-up program to make
;
; It installs for all users, which needs an administrator. Exit codes, also of the uninstaller: 0 done, 1 cancelled,
; 2 failed, 3 the console is open, 4 another KSPassThru.dll is where the demo server's was asked for, 5 no administrator,
; 6 Windows is too old, 7 the set-up program is already open.
;
; A KSPassThru.dll in the folder is the maker's unless its version resource names the demo server: it is then neither
; replaced nor removed.

Unicode true
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel admin
SetCompressor /SOLID lzma
AllowSkipFiles off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinVer.nsh
!include x64.nsh
!include "${STAGE}/files.nsh"

!define PRODUCT "Orvane VANTE Event Configuration Console"
!define PUBLISHER "Kestrel Sonics"
!define PROGRAM "ORVSConfig.exe"
!define LIBRARY "KSPassThru.dll"
!define DEMO_PRODUCT "Orvane VANTE demo server"  ; as demo_server/windows/demo_server.rc has it
!define UNINSTALLER "Uninstall.exe"
!define LINK "$SMPROGRAMS\${PRODUCT}.lnk"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ORVSConfig"
!define USER_KEY "Software\Kestrel Sonics\ORVSConfig"

Name "${PRODUCT}"
OutFile "${OUT}"
BrandingText "${PUBLISHER}"
InstallDir "$PROGRAMFILES32\Kestrel Sonics\ORVSConfig"
InstallDirRegKey HKLM "${UNINSTALL_KEY}" "InstallLocation"
ShowInstDetails nevershow
ShowUninstDetails nevershow

Var InUse         ; a file that cannot be replaced, empty when all can
Var LibraryOwner  ; of the library in the folder: "" when there is none, "demo" or "other"
Var DemoAsked     ; 1 when the command line asks for the demo server
Var FinishText

; ----------------------------------------------------------------------------------------------------------------------
; Pages and languages

!define MUI_ICON "${STAGE}/icon.ico"
!define MUI_UNICON "${STAGE}/icon.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${STAGE}/picture.bmp"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC

!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE_3LINES
!define MUI_FINISHPAGE_TEXT "$FinishText"
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "$(TEXT_START)"
!define MUI_FINISHPAGE_RUN_FUNCTION startConsole
!define MUI_PAGE_CUSTOMFUNCTION_SHOW showFinishPage
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE German
!insertmacro MUI_LANGUAGE French
!include texts.nsh

VIProductVersion "${VERSION}.0"
!macro VersionTexts language
  VIAddVersionKey /LANG=${language} CompanyName "${PUBLISHER}"
  VIAddVersionKey /LANG=${language} FileDescription "${PRODUCT} Setup"
  VIAddVersionKey /LANG=${language} FileVersion "${VERSION}.0"
  VIAddVersionKey /LANG=${language} ProductName "${PRODUCT}"
  VIAddVersionKey /LANG=${language} ProductVersion "${VERSION}.0"
  VIAddVersionKey /LANG=${language} LegalCopyright "${PUBLISHER}"
!macroend
!insertmacro VersionTexts ${LANG_ENGLISH}
!insertmacro VersionTexts ${LANG_GERMAN}
!insertmacro VersionTexts ${LANG_FRENCH}

; ----------------------------------------------------------------------------------------------------------------------
; What is done with each file of a list

!macro InstallFile name source
  File "/oname=${name}" "${source}"
!macroend

!macro DeleteFile name source
  Delete "$INSTDIR\${name}"
!macroend

!macro DeleteDemoFile name source
  ${If} "${name}" != "${LIBRARY}"
  ${OrIf} $LibraryOwner != "other"
    Delete "$INSTDIR\${name}"
  ${EndIf}
!macroend

; A program that runs and a file that is open can be neither written nor deleted.
!macro CheckFree name source
  ${If} ${FileExists} "$INSTDIR\${name}"
    SetFileAttributes "$INSTDIR\${name}" NORMAL
    ClearErrors
    FileOpen $0 "$INSTDIR\${name}" a
    ${If} ${Errors}
      StrCpy $InUse "${name}"
    ${Else}
      FileClose $0
    ${EndIf}
  ${EndIf}
!macroend

; ----------------------------------------------------------------------------------------------------------------------
; What the set-up program and the uninstaller share; `un` is the prefix that NSIS wants for the latter's functions

!macro Shared un
  Function ${un}stop
    Exch $0
    SetErrorLevel $0
    Pop $0
    ; Quit and not Abort, which sets a code of its own.
    Quit
  FunctionEnd

  Function ${un}checkUser
    SetShellVarContext all
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
      MessageBox MB_OK|MB_ICONSTOP "$(TEXT_NO_ADMINISTRATOR)" /SD IDOK
      Push 5
      Call ${un}stop
    ${EndIf}
  FunctionEnd

  Function ${un}stopWhileInUse
    retry:
    StrCpy $InUse ""
    !insertmacro ForEachConsoleFile CheckFree
    ${If} $InUse != ""
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TEXT_IN_USE)" /SD IDCANCEL IDRETRY retry
      Push 3
      Call ${un}stop
    ${EndIf}
  FunctionEnd

  Function ${un}findLibraryOwner
    StrCpy $LibraryOwner ""
    ${IfNot} ${FileExists} "$INSTDIR\${LIBRARY}"
      Return
    ${EndIf}
    StrCpy $LibraryOwner "other"
    System::Call 'version::GetFileVersionInfoSizeW(w "$INSTDIR\${LIBRARY}", p 0) i .r0'
    ${If} $0 = 0
      Return
    ${EndIf}
    System::Alloc $0
    Pop $1
    System::Call 'version::GetFileVersionInfoW(w "$INSTDIR\${LIBRARY}", i 0, i r0, p r1) i .r2'
    ${If} $2 <> 0
      System::Call 'version::VerQueryValueW(p r1, w "\StringFileInfo\040904E4\ProductName", *p .r3, *i .r4) i .r2'
      ${If} $2 <> 0
        System::Call 'kernel32::lstrcpynW(w .r5, p r3, i r4)'
        ${If} $5 == "${DEMO_PRODUCT}"
          StrCpy $LibraryOwner "demo"
        ${EndIf}
      ${EndIf}
    ${EndIf}
    System::Free $1
  FunctionEnd
!macroend
!insertmacro Shared ""
!insertmacro Shared "un."

; ----------------------------------------------------------------------------------------------------------------------
; Installing

; What an earlier run installed, here or elsewhere, goes first: its files may have other names. Link and entries stay, and
; with them what the users made of them, such as a pinned link.
Function removeFilesOfEarlierRun
  ReadRegStr $1 HKLM "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $1 == ""
  ${OrIfNot} ${FileExists} "$1\${UNINSTALLER}"
    Return
  ${EndIf}
  ; A damaged uninstaller does nothing, and the files are written over.
  ExecWait '"$1\${UNINSTALLER}" /S /UPGRADE _?=$1' $2
  ${If} $2 = 3
    StrCpy $InUse "$1\${PROGRAM}"
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(TEXT_IN_USE)" /SD IDOK
    Push 3
    Call stop
  ${EndIf}
  Delete "$1\${UNINSTALLER}"
  ${If} $1 != $INSTDIR
    RMDir "$1"
  ${EndIf}
FunctionEnd

Section "-prepare"
  Call settleDemo
  Call stopWhileInUse
  Call removeFilesOfEarlierRun
SectionEnd

Section "$(TEXT_CONSOLE)" sectionConsole
  SectionIn RO
  SetOutPath "$INSTDIR"
  !insertmacro ForEachConsoleFile InstallFile
  WriteUninstaller "$INSTDIR\${UNINSTALLER}"
  CreateShortcut "${LINK}" "$INSTDIR\${PROGRAM}"
SectionEnd

Section /o "$(TEXT_DEMO)" sectionDemo
  SetOutPath "$INSTDIR"
  !insertmacro ForEachDemoFile InstallFile
SectionEnd

Section "-register"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM},0"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\${UNINSTALLER}"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\${UNINSTALLER}" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  SectionGetSize ${sectionConsole} $0
  ${If} ${SectionIsSelected} ${sectionDemo}
    SectionGetSize ${sectionDemo} $1
    IntOp $0 $0 + $1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "DemoServer" 1
  ${Else}
    DeleteRegValue HKLM "${UNINSTALL_KEY}" "DemoServer"
  ${EndIf}
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" $0
  ; Of the user who installs. For any other the console takes its own folder, which is the same.
  WriteRegStr HKCU "${USER_KEY}\settings" "installPath" "$INSTDIR"
  WriteRegStr HKCU "${USER_KEY}\settings" "pathConsoleInstall" "$INSTDIR"

  Call findLibraryOwner
  StrCpy $FinishText "$(TEXT_INSTALLED)"
  ${If} $LibraryOwner == ""
    StrCpy $FinishText "$(TEXT_NO_LIBRARY)"
  ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${sectionConsole} "$(TEXT_CONSOLE_ABOUT)"
  !insertmacro MUI_DESCRIPTION_TEXT ${sectionDemo} "$(TEXT_DEMO_ABOUT)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; The demo server gives way to another library. A silent run that asked for it ends instead: nobody would be told.
Function settleDemo
  ${IfNot} ${SectionIsSelected} ${sectionDemo}
    Return
  ${EndIf}
  Call findLibraryOwner
  ${If} $LibraryOwner == "other"
    ${If} ${Silent}
    ${AndIf} $DemoAsked = 1
      Push 4
      Call stop
    ${EndIf}
    MessageBox MB_OK|MB_ICONINFORMATION "$(TEXT_OTHER_LIBRARY)" /SD IDOK
    !insertmacro UnselectSection ${sectionDemo}
  ${EndIf}
FunctionEnd

Function .onInit
  ${IfNot} ${AtLeastWin7}
    MessageBox MB_OK|MB_ICONSTOP "$(TEXT_OLD_WINDOWS)" /SD IDOK
    Push 6
    Call stop
  ${EndIf}
  Call checkUser
  ; The system closes the handle when this process ends.
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Global\ORVSConfigSetup") p .r0 ?e'
  Pop $0
  ${If} $0 = 183  ; ERROR_ALREADY_EXISTS
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(TEXT_ALREADY_OPEN)" /SD IDOK
    Push 7
    Call stop
  ${EndIf}

  ; As the last run had it, unless the command line says otherwise.
  ReadRegDWORD $0 HKLM "${UNINSTALL_KEY}" "DemoServer"
  ${GetParameters} $1
  ${GetOptions} $1 "/DEMO=" $DemoAsked
  ${If} $DemoAsked != ""
    StrCpy $0 $DemoAsked
  ${EndIf}
  ${If} $0 = 1
    !insertmacro SelectSection ${sectionDemo}
  ${EndIf}
FunctionEnd

Function showFinishPage
  ${If} $LibraryOwner == ""
    ${NSD_Uncheck} $mui.FinishPage.Run
  ${EndIf}
FunctionEnd

; By the shell, so that the console runs as the user who is logged on and not as the administrator who installs.
Function startConsole
  Exec '"$WINDIR\explorer.exe" "${LINK}"'
FunctionEnd

; ----------------------------------------------------------------------------------------------------------------------
; Removing

Function un.onInit
  Call un.checkUser
FunctionEnd

; Removes only what set-up wrote. The user's settings stay, except the two values if they still name this folder.
!macro ForgetFolder name
  ReadRegStr $0 HKCU "${USER_KEY}\settings" "${name}"
  ${If} $0 == $INSTDIR
    DeleteRegValue HKCU "${USER_KEY}\settings" "${name}"
  ${EndIf}
!macroend

Section Uninstall
  Call un.stopWhileInUse
  Call un.findLibraryOwner
  !insertmacro ForEachConsoleFile DeleteFile
  !insertmacro ForEachDemoFile DeleteDemoFile
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/UPGRADE" $0
  ${IfNot} ${Errors}
    Return
  ${EndIf}

  Delete "${LINK}"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  !insertmacro ForgetFolder installPath
  !insertmacro ForgetFolder pathConsoleInstall
  DeleteRegKey /ifnosubkeys /ifnovalues HKCU "${USER_KEY}\settings"
  DeleteRegKey /ifnosubkeys /ifnovalues HKCU "${USER_KEY}"
  DeleteRegKey /ifnosubkeys /ifnovalues HKCU "Software\Kestrel Sonics"
  ; Last, so that whoever waits for the removal can wait for this.
  Delete "$INSTDIR\${UNINSTALLER}"
  RMDir "$INSTDIR"
  ; This one only if nothing else is in it.
  RMDir "$PROGRAMFILES32\Kestrel Sonics"
SectionEnd
