; The installer for one user, without elevation; filled in and called by packaging/windows/package.
;     /S                              asks nothing
;     /MACHINES="TARVIN,LASER 2"      the machine names, one entry of the start menu for each
;     /SERVICE="LASER 3"              machines without a window, a service for each; needs an administrator
;     /D=C:\Folder                    the program folder; last, without quotation marks
; Exit codes: 0 done, 1 cancelled by the user, 2 not done, 3 done, but without a service.

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
!define MUI_COMPONENTSPAGE_NODESC
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
Page custom AskMachines TakeMachines
Page custom AskServices TakeServices
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var machines
Var machinesField
; Machines that have a service: wanted now, and before this installation.
Var services
Var servicesField
Var presentServices

; Runs the service program as an administrator, and waits. A service needs one; nothing else here does.
!macro AsAdministrator arguments
    ExecShellWait "runas" "$INSTDIR\tarvindl-service.exe" '${arguments}' SW_HIDE
!macroend

; A program that runs holds its file. One that is just ending gets five seconds.
!macro RefuseWhileRunning un
Function ${un}RefuseWhileRunning
    FindFirst $0 $1 "$INSTDIR\tarvin*.exe"
    ${DoWhile} $1 != ""
        ${ForEach} $3 1 20 + 1
            ClearErrors
            FileOpen $2 "$INSTDIR\$1" a
            ${IfNot} ${Errors}
                ${ExitFor}
            ${EndIf}
            Sleep 250
        ${Next}
        ${If} $3 > 20
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

; What follows the option in $4, such as /MACHINES=, in $1: quoted itself, or in a word that is quoted whole, as some shells
; do, or up to a blank. Empties $4 if the option is there.
Function NamesOfCommandLine
    ${GetParameters} $0
    StrLen $5 $4
    StrCpy $1 ""
    StrCpy $2 " "
    ${Do}
        StrCpy $3 $0 $5
        ${IfThen} $3 == "" ${|} Return ${|}
        ${IfThen} $3 == $4 ${|} ${ExitDo} ${|}
        StrCpy $2 $0 1
        StrCpy $0 $0 "" 1
    ${Loop}
    StrCpy $4 ""
    StrCpy $0 $0 "" $5
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

; Each of the names in a list such as $machines, which $7 holds first, trimmed, in $9, and in $8 as it can stand in a file's name.
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

Section "TarvinDL"
    SectionIn RO
    ${If} $presentServices != ""
    ${AndIf} ${FileExists} "$INSTDIR\tarvindl-service.exe"
        !insertmacro AsAdministrator "--services stop"
    ${EndIf}
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

; Removes what is no longer wanted, makes what is, and starts what was there before.
Section /o "Service for machines without a window" SERVICES
SectionEnd

Section
    ${IfNot} ${SectionIsSelected} ${SERVICES}
        StrCpy $services ""
    ${EndIf}
    ${If} $services == $presentServices
        ${If} $services != ""
            !insertmacro AsAdministrator "--services start"
        ${EndIf}
        Return
    ${EndIf}
    ${If} $presentServices != ""
        !insertmacro AsAdministrator "--services remove"
    ${EndIf}
    WriteRegStr HKCU "${KEY}" "Services" $services
    StrCpy $7 $services
    ${Do}
        Call NextMachine
        ${IfThen} $9 == "" ${|} ${ExitDo} ${|}
        !insertmacro AsAdministrator '--install-service --installation "${INSTALLATION}" $9'
        ReadRegStr $0 HKLM "SYSTEM\CurrentControlSet\Services\TarvinDL $8" "ImagePath"
        ${If} $0 == ""
            MessageBox MB_OK|MB_ICONEXCLAMATION "The service for $9 could not be set up. Install again as an administrator, \
                or run: tarvindl-service --install-service $9" /SD IDOK
            SetErrorLevel 3
        ${EndIf}
    ${Loop}
SectionEnd

; Takes away what the installer has brought. KEL.INI, settings, logs and NC files are the user's.
Section Uninstall
    ReadRegStr $0 HKCU "${KEY}" "Services"
    ${If} $0 != ""
        !insertmacro AsAdministrator "--services remove"
    ${EndIf}
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

; Below the sections, whose numbers these functions use.

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
    StrCpy $4 "/MACHINES="
    Call NamesOfCommandLine
    ${If} $1 != ""
        StrCpy $machines $1
    ${EndIf}
    ReadRegStr $presentServices HKCU "${KEY}" "Services"
    StrCpy $services $presentServices
    StrCpy $4 "/SERVICE="
    Call NamesOfCommandLine
    ${If} $4 == ""
        StrCpy $services $1
    ${EndIf}
    ${If} $services != ""
        !insertmacro SelectSection ${SERVICES}
    ${EndIf}
FunctionEnd

Function AskServices
    ${IfNot} ${SectionIsSelected} ${SERVICES}
        Abort
    ${EndIf}
    !insertmacro MUI_HEADER_TEXT "Services" "Which machines are served without a window?"
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateLabel} 0 0 100% 48u "A service starts with Windows and serves its machine while nobody is logged on. \
        Windows asks for an administrator to set it up. A machine has either a window or a service at a time. \
        Separate several names by commas."
    Pop $0
    ${NSD_CreateText} 0 54u 100% 13u $services
    Pop $servicesField
    nsDialogs::Show
FunctionEnd

Function TakeServices
    ${NSD_GetText} $servicesField $services
    ${If} $services == ""
        Abort
    ${EndIf}
FunctionEnd
