; The installer for Windows. scripts/package-windows compiles it with
;   VERSION   the version
;   STAGE     the folder of what is installed, and beside it
;   LISTS     the folder of install.nsh and remove.nsh, which name each file of STAGE
;   OUT       the installer
;
; Options: /S for no questions, /AllUsers or /CurrentUser, and last /D=FOLDER. It ends with 0, or with 1 where nothing has
; been installed.
;
; The files are put into FOLDER\~new first, so that what can fail has not touched an earlier version; then that is
; removed by its own uninstaller, the files are moved into place and both servers registered. If registering fails,
; everything is taken back. Whatever is cut off in between, the next run begins anew, and the uninstaller, which is
; written before anything else of a first installation, removes it.

Unicode true
ManifestDPIAware true
RequestExecutionLevel highest
SetCompressor /SOLID lzma
SetDateSave off
Name "Orvex"
OutFile "${OUT}"
BrandingText "Orvex ${VERSION}"
InstallDir ""

!include LogicLib.nsh
!include FileFunc.nsh
!include MUI2.nsh
!include nsDialogs.nsh
!include WordFunc.nsh
!include x64.nsh

!define UNINSTALL_KEYS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL_KEY "${UNINSTALL_KEYS}\Orvex"
!define MACHINE_ENVIRONMENT "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Orvex"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Orvex, technical analysis of price series"
VIAddVersionKey LegalCopyright "The Orvex authors"

Var ForUser ; 1 for the current user alone, 0 for all
Var IsAdmin
Var ForAll  ; the button
Var Earlier ; the folder of an earlier version

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE.txt"
Page custom askForWhom takeForWhom
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; regsvr32 of a width for a server: 0 in $0 if all is well.
!macro Regsvr32 OPTIONS SERVER
  ${If} $ForUser = 1
    StrCpy $1 "/s ${OPTIONS} /n /i:user"
  ${Else}
    StrCpy $1 "/s ${OPTIONS}"
  ${EndIf}
  ClearErrors
  ExecWait '"$SYSDIR\regsvr32.exe" $1 "${SERVER}"' $0
  ${If} ${Errors}
    StrCpy $0 1
  ${EndIf}
!macroend

; The same for both widths that the system can use, or for one.
!macro Server OPTIONS WIDTH
  !if "${WIDTH}" == "x64"
    ${DisableX64FSRedirection}
  !endif
  !insertmacro Regsvr32 "${OPTIONS}" "$INSTDIR\${WIDTH}\Orvex.dll"
  !if "${WIDTH}" == "x64"
    ${EnableX64FSRedirection}
  !endif
!macroend

!macro ReadPath
  ${If} $ForUser = 1
    ReadRegStr $0 HKCU "Environment" "Path"
  ${Else}
    ReadRegStr $0 HKLM "${MACHINE_ENVIRONMENT}" "Path"
  ${EndIf}
!macroend

!macro WritePath
  ${If} $ForUser = 1
    ${If} $0 == ""
      DeleteRegValue HKCU "Environment" "Path"
    ${Else}
      WriteRegExpandStr HKCU "Environment" "Path" $0
    ${EndIf}
  ${Else}
    WriteRegExpandStr HKLM "${MACHINE_ENVIRONMENT}" "Path" $0
  ${EndIf}
  SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
!macroend

; For all users or for one: where keys, menu and files go.
!macro UseContext
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  ${If} $ForUser = 1
    SetShellVarContext current
  ${Else}
    SetShellVarContext all
  ${EndIf}
!macroend

; Everything that an installation has made, but the uninstaller itself: by name, so that nothing else goes.
!macro RemoveAll
  ${If} ${RunningX64}
    ${If} ${FileExists} "$INSTDIR\x64\Orvex.dll"
      !insertmacro Server /u x64
    ${EndIf}
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\x86\Orvex.dll"
    !insertmacro Server /u x86
  ${EndIf}
  ; A server that a program has loaded cannot be deleted, but it can be renamed, which makes way for another.
  !insertmacro PutAside x86
  !insertmacro PutAside x64
  !include "${LISTS}/remove.nsh"
  Delete "$SMPROGRAMS\Orvex\Orvex Studio.lnk"
  Delete "$SMPROGRAMS\Orvex\Orvex Command Line.lnk"
  Delete "$SMPROGRAMS\Orvex\Examples.lnk"
  RMDir "$SMPROGRAMS\Orvex"
  ClearErrors
  !insertmacro ReadPath
  ${IfNot} ${Errors}
    StrCpy $2 $0
    ${WordAdd} $0 ";" "-$INSTDIR\bin" $0
    ${If} $0 != $2
      !insertmacro WritePath
    ${EndIf}
  ${EndIf}
!macroend

!macro PutAside WIDTH
  ${If} ${FileExists} "$INSTDIR\${WIDTH}\Orvex.dll"
    GetTempFileName $0 "$INSTDIR\${WIDTH}"
    Delete $0
    Rename "$INSTDIR\${WIDTH}\Orvex.dll" $0
    Delete /REBOOTOK $0
  ${EndIf}
!macroend

; The last of what there is. A user who has nothing else installed has no place for it either.
!macro RemoveUninstallerAndEntry
  SetOutPath "$TEMP"
  Delete "$INSTDIR\~uninstall.exe"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ${If} $ForUser = 1
    RMDir "$LOCALAPPDATA\Programs"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey /ifempty HKCU "${UNINSTALL_KEYS}"
  ${Else}
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
  ${EndIf}
!macroend

; The root of the keys has to stand in the instruction itself.
!macro WriteEntry ROOT
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "DisplayName" "Orvex"
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "Publisher" "The Orvex authors"
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\uninstall.exe"
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr ${ROOT} "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD ${ROOT} "${UNINSTALL_KEY}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD ${ROOT} "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD ${ROOT} "${UNINSTALL_KEY}" "NoRepair" 1
!macroend

!macro ReadLocation VARIABLE
  ${If} $ForUser = 1
    ReadRegStr ${VARIABLE} HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${Else}
    ReadRegStr ${VARIABLE} HKLM "${UNINSTALL_KEY}" "InstallLocation"
  ${EndIf}
!macroend

Function refuse
  ; $0: why.
  DetailPrint $0
  ${IfNot} ${Silent}
    MessageBox MB_ICONSTOP $0
  ${EndIf}
  SetErrorLevel 1
  Abort
FunctionEnd

Function .onInit
  UserInfo::GetAccountType
  Pop $IsAdmin
  StrCpy $ForUser 0
  ${If} $IsAdmin != "Admin"
    StrCpy $ForUser 1
  ${EndIf}
  ${GetParameters} $2
  ClearErrors
  ${GetOptions} $2 "/CurrentUser" $3
  ${IfNot} ${Errors}
    StrCpy $ForUser 1
  ${EndIf}
  ClearErrors
  ${GetOptions} $2 "/AllUsers" $3
  ${IfNot} ${Errors}
    StrCpy $ForUser 0
    ${If} $IsAdmin != "Admin"
      StrCpy $0 "Installing for all users takes an administrator; without one: /CurrentUser."
      Call refuse
    ${EndIf}
  ${EndIf}
  Call chooseFolder
FunctionEnd

; The folder of an earlier version, or the usual one, unless another was told.
Function chooseFolder
  !insertmacro UseContext
  ${If} $INSTDIR == ""
    !insertmacro ReadLocation $INSTDIR
  ${EndIf}
  ${If} $INSTDIR == ""
    ${If} $ForUser = 1
      StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Orvex"
    ${ElseIf} ${RunningX64}
      StrCpy $INSTDIR "$PROGRAMFILES64\Orvex"
    ${Else}
      StrCpy $INSTDIR "$PROGRAMFILES\Orvex"
    ${EndIf}
  ${EndIf}
FunctionEnd

Function askForWhom
  ${If} $IsAdmin != "Admin"
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "For whom?" "Who on this computer will use Orvex."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "For all users of this computer"
  Pop $ForAll
  ${NSD_CreateRadioButton} 0 30u 100% 12u "For me alone"
  Pop $1
  ${If} $ForUser = 1
    ${NSD_Check} $1
  ${Else}
    ${NSD_Check} $ForAll
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function takeForWhom
  StrCpy $1 $ForUser
  ${NSD_GetState} $ForAll $0
  StrCpy $ForUser 1
  ${If} $0 = ${BST_CHECKED}
    StrCpy $ForUser 0
  ${EndIf}
  ${If} $1 != $ForUser
    StrCpy $INSTDIR ""
    Call chooseFolder
  ${EndIf}
FunctionEnd

; The uninstaller and its entry: from here on what there is can be removed.
!macro WriteUninstallerAndEntry
  ; It has its name only when it is whole.
  WriteUninstaller "$INSTDIR\~uninstall.exe"
  Delete "$INSTDIR\uninstall.exe"
  Rename "$INSTDIR\~uninstall.exe" "$INSTDIR\uninstall.exe"
  ${If} $ForUser = 1
    !insertmacro WriteEntry HKCU
  ${Else}
    !insertmacro WriteEntry HKLM
  ${EndIf}
!macroend

Function takeBack
  RMDir /r "$INSTDIR\~new"
  !insertmacro RemoveAll
  !insertmacro RemoveUninstallerAndEntry
FunctionEnd

Function .onInstFailed
  RMDir /r "$INSTDIR\~new"
FunctionEnd

Section
  !insertmacro ReadLocation $Earlier
  ${If} $Earlier != ""
  ${AndIfNot} ${FileExists} "$Earlier\uninstall.exe"
    StrCpy $Earlier ""
  ${EndIf}
  RMDir /r "$INSTDIR\~new"
  ClearErrors
  SetOutPath "$INSTDIR"
  ${If} $Earlier == ""
    !insertmacro WriteUninstallerAndEntry
  ${EndIf}
  !include "${LISTS}/install.nsh"
  SetOutPath "$TEMP"
  ${If} ${Errors}
    RMDir /r "$INSTDIR\~new"
    ${If} $Earlier == ""
      Call takeBack
    ${EndIf}
    StrCpy $0 "The files could not be written to $INSTDIR."
    Call refuse
  ${EndIf}

  ${If} $Earlier != ""
    ; It removes its registration and its files; run where it is, it ends only then.
    ExecWait '"$Earlier\uninstall.exe" /S /Earlier _?=$Earlier' $0
    ${If} $0 <> 0
      RMDir /r "$INSTDIR\~new"
      StrCpy $0 "The version that is installed could not be removed."
      Call refuse
    ${EndIf}
    Delete "$Earlier\uninstall.exe"
    RMDir "$Earlier"
    !insertmacro WriteUninstallerAndEntry
  ${EndIf}

  ClearErrors
  !include "${LISTS}/move.nsh"
  ${If} ${RunningX64}
    Rename "$INSTDIR\~new\bin64\orvex.exe" "$INSTDIR\bin\orvex.exe"
  ${Else}
    Rename "$INSTDIR\~new\bin32\orvex.exe" "$INSTDIR\bin\orvex.exe"
  ${EndIf}
  RMDir /r "$INSTDIR\~new"
  ${If} ${Errors}
    Call takeBack
    StrCpy $0 "The files could not be put into $INSTDIR."
    Call refuse
  ${EndIf}

  !insertmacro Server "" x86
  ${If} $0 = 0
  ${AndIf} ${RunningX64}
    !insertmacro Server "" x64
  ${EndIf}
  ${If} $0 <> 0
    Call takeBack
    StrCpy $0 "The servers could not be registered, so nothing has been installed."
    Call refuse
  ${EndIf}

  CreateDirectory "$SMPROGRAMS\Orvex"
  CreateShortcut "$SMPROGRAMS\Orvex\Orvex Studio.lnk" "$INSTDIR\bin\orvex-studio.html"
  CreateShortcut "$SMPROGRAMS\Orvex\Orvex Command Line.lnk" "$SYSDIR\cmd.exe" '/k ""$INSTDIR\bin\orvex.exe" --help"'
  CreateShortcut "$SMPROGRAMS\Orvex\Examples.lnk" "$INSTDIR\examples"
  ; A path that is too long for this program to read stays as it is.
  ClearErrors
  !insertmacro ReadPath
  ${If} $ForUser = 1
  ${OrIfNot} ${Errors}
    StrLen $1 $0
    IntOp $1 $1 + 300
    ${If} $1 < ${NSIS_MAX_STRLEN}
      ${WordAdd} $0 ";" "+$INSTDIR\bin" $0
      !insertmacro WritePath
    ${EndIf}
  ${EndIf}
  SetErrorLevel 0
SectionEnd

Function un.onInit
  StrCpy $ForUser 0
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $ForUser 1
  ${EndIf}
  !insertmacro UseContext
FunctionEnd

Section Uninstall
  ; A later version that has this one removed has its files there.
  ${GetParameters} $2
  ClearErrors
  ${GetOptions} $2 "/Earlier" $3
  ${If} ${Errors}
    RMDir /r "$INSTDIR\~new"
  ${EndIf}
  !insertmacro RemoveAll
  !insertmacro RemoveUninstallerAndEntry
  SetErrorLevel 0
SectionEnd
