; The installer for one user, without elevation; filled in and called by packaging/windows/package.
;     /S                              asks nothing
;     /MACHINES="TARVIN,LASER 2"      the machine names, one entry of the start menu for each
;     /D=C:\Folder                    the program folder; last, without quotation marks
; Exit codes: 0 done, 1 cancelled by the user, 2 not done.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS all

!include MUI2.nsh
!include FileFunc.nsh
!include WinVer.nsh
!include LogicLib.nsh
!include nsDialogs.nsh

!define KEY "Software\TarvinDL"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\TarvinDL"
!define INSTALLATION "$LOCALAPPDATA\TarvinDL\2026"
!define MENU "$SMPROGRAMS\TarvinDL"

Name "TarvinDL"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\TarvinDL"
InstallDirRegKey HKCU "${KEY}" "Folder"
BrandingText "TarvinDL ${VERSION}"
VIProductVersion "${VERSION}"
VIAddVersionKey "ProductName" "TarvinDL"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installer of TarvinDL"
VIAddVersionKey "LegalCopyright" ""

!define MUI_ICON "${SOURCE}/packaging/icons/tarvindl.ico"
!define MUI_UNICON "${SOURCE}/packaging/icons/tarvindl.ico"
!insertmacro MUI_PAGE_DIRECTORY
Page custom AskMachines TakeMachines
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var machines
Var machinesField

; A program that runs holds its file.
!macro RefuseWhileRunning un
Function ${un}RefuseWhileRunning
    FindFirst $0 $1 "$INSTDIR\tarvin*.exe"
    ${DoWhile} $1 != ""
        ClearErrors
        FileOpen $2 "$INSTDIR\$1" a
        ${If} ${Errors}
            FindClose $0
            MessageBox MB_OK|MB_ICONEXCLAMATION "$1 is running. End it and try again." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
        FileClose $2
        FindNext $0 $1
    ${Loop}
    FindClose $0
FunctionEnd
!macroend
!insertmacro RefuseWhileRunning ""
!insertmacro RefuseWhileRunning "un."

Function .onInit
    ${IfNot} ${AtLeastWin7}
        MessageBox MB_OK|MB_ICONSTOP "TarvinDL needs Windows 7 or later." /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    ; An update keeps the names of the installation before it.
    ReadRegStr $machines HKCU "${KEY}" "Machines"
    ${If} $machines == ""
        StrCpy $machines "TARVIN"
    ${EndIf}
    Call MachinesOfCommandLine
    ${If} $1 != ""
        StrCpy $machines $1
    ${EndIf}
FunctionEnd

; What follows /MACHINES= in $1: quoted itself, or in a word that is quoted whole, as some shells do, or up to a blank.
Function MachinesOfCommandLine
    ${GetParameters} $0
    StrCpy $1 ""
    StrCpy $2 " "
    ${Do}
        StrCpy $3 $0 10
        ${IfThen} $3 == "" ${|} Return ${|}
        ${IfThen} $3 == "/MACHINES=" ${|} ${ExitDo} ${|}
        StrCpy $2 $0 1
        StrCpy $0 $0 "" 1
    ${Loop}
    StrCpy $0 $0 "" 10
    ${If} $2 != '"'
        StrCpy $2 " "
        StrCpy $3 $0 1
        ${If} $3 == '"'
            StrCpy $2 $3
            StrCpy $0 $0 "" 1
        ${EndIf}
    ${EndIf}
    ${Do}
        StrCpy $3 $0 1
        ${If} $3 == ""
        ${OrIf} $3 == $2
            Return
        ${EndIf}
        StrCpy $1 "$1$3"
        StrCpy $0 $0 "" 1
    ${Loop}
FunctionEnd

Function AskMachines
    !insertmacro MUI_HEADER_TEXT "Machines" "Which machines does this workstation serve?"
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateLabel} 0 0 100% 36u "Each machine gets an entry of its own in the start menu, and settings of its own. \
        Separate several names by commas, for example: TARVIN, LASER 2"
    Pop $0
    ${NSD_CreateText} 0 42u 100% 13u $machines
    Pop $machinesField
    nsDialogs::Show
FunctionEnd

Function TakeMachines
    ${NSD_GetText} $machinesField $machines
    ${If} $machines == ""
        Abort
    ${EndIf}
FunctionEnd

; Each of the names in $machines, trimmed, in $9, and in $8 as it can stand in a file's name.
!macro ForEachMachine un
Function ${un}NextMachine
    next:
    ${If} $7 == ""
        StrCpy $9 ""
        Return
    ${EndIf}
    StrCpy $5 0
    ${Do}
        StrCpy $6 $7 1 $5
        ${IfThen} $6 == "" ${|} ${ExitDo} ${|}
        ${IfThen} $6 == "," ${|} ${ExitDo} ${|}
        IntOp $5 $5 + 1
    ${Loop}
    StrCpy $9 $7 $5
    IntOp $5 $5 + 1
    StrCpy $7 $7 "" $5
    ${Do}
        StrCpy $6 $9 1
        ${IfThen} $6 != " " ${|} ${ExitDo} ${|}
        StrCpy $9 $9 "" 1
    ${Loop}
    ${Do}
        StrCpy $6 $9 1 -1
        ${IfThen} $6 != " " ${|} ${ExitDo} ${|}
        StrCpy $9 $9 -1
    ${Loop}
    ${IfThen} $9 == "" ${|} goto next ${|}
    StrCpy $8 ""
    StrCpy $5 0
    ${Do}
        StrCpy $6 $9 1 $5
        ${IfThen} $6 == "" ${|} ${ExitDo} ${|}
        ${Select} $6
        ${Case4} "\" "/" ":" "*"
            StrCpy $6 "_"
        ${Case5} "?" "<" ">" "|" '"'
            StrCpy $6 "_"
        ${EndSelect}
        StrCpy $8 "$8$6"
        IntOp $5 $5 + 1
    ${Loop}
FunctionEnd
!macroend
!insertmacro ForEachMachine ""
!insertmacro ForEachMachine "un."

; The entries that an installation before this one has made.
!macro RemoveMenu un
    ReadRegStr $7 HKCU "${KEY}" "Machines"
    ${Do}
        Call ${un}NextMachine
        ${IfThen} $9 == "" ${|} ${ExitDo} ${|}
        Delete "${MENU}\$8.lnk"
    ${Loop}
!macroend

Section
    Call RefuseWhileRunning
    SetShellVarContext current
    SetOutPath "$INSTDIR"
    File "${CONTENT}/program/*.*"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    SetOutPath "${INSTALLATION}"
    CreateDirectory "${INSTALLATION}\NC Files"
    SetOverwrite off
    File "${CONTENT}/installation/KEL.INI"
    SetOverwrite on
    ; Texts may have been edited.
    ${If} ${FileExists} "${INSTALLATION}\diction.ary"
        Delete "${INSTALLATION}\diction.ary.old"
        Rename "${INSTALLATION}\diction.ary" "${INSTALLATION}\diction.ary.old"
    ${EndIf}
    File /x KEL.INI "${CONTENT}/installation/*.*"

    !insertmacro RemoveMenu ""
    ; What an entry starts is started in the program folder.
    SetOutPath "$INSTDIR"
    CreateDirectory "${MENU}"
    StrCpy $7 $machines
    ${Do}
        Call NextMachine
        ${IfThen} $9 == "" ${|} ${ExitDo} ${|}
        CreateShortcut "${MENU}\$8.lnk" "$INSTDIR\${PROGRAM}.exe" '"$9"' "$INSTDIR\${PROGRAM}.exe"
    ${Loop}

    WriteRegStr HKCU "${KEY}" "Folder" "$INSTDIR"
    WriteRegStr HKCU "${KEY}" "Machines" $machines
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "TarvinDL"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM}.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

; Takes away what the installer has brought. KEL.INI, settings, logs and NC files are the user's.
Section Uninstall
    Call un.RefuseWhileRunning
    SetShellVarContext current
    !insertmacro RemoveMenu "un."
    RMDir "${MENU}"
    !include "${CONTENT}/uninstall.nsh"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    RMDir "${INSTALLATION}\NC Files"
    RMDir "${INSTALLATION}"
    RMDir "$LOCALAPPDATA\TarvinDL"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey HKCU "${KEY}"
SectionEnd
