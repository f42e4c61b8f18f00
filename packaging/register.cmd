@echo off
rem Registers Celdo.dll for each architecture this Windows runs: machine-wide (run it as an
rem administrator), or with /user for the current user only, which needs no rights. With /u it
rem unregisters instead (unregister.cmd passes it).
setlocal
set "here=%~dp0"
set "scope="
set "undo="
set "done=Registered"
:options
if "%~1"=="" goto run
if /i "%~1"=="/user" set "scope=/n /i:user"
if /i "%~1"=="/u" set "undo=/u"
if /i "%~1"=="/u" set "done=Unregistered"
shift
goto options
:run
rem A 32-bit command prompt on 64-bit Windows reaches the 64-bit regsvr32 through Sysnative.
set "sys64="
if defined PROCESSOR_ARCHITEW6432 set "sys64=%SystemRoot%\Sysnative"
if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" set "sys64=%SystemRoot%\System32"
set "sys32=%SystemRoot%\System32"
if defined sys64 set "sys32=%SystemRoot%\SysWOW64"
rem Each result is read with "if errorlevel": some command interpreters run what follows "||"
rem whatever the command before it answered.
set "failed="
if defined sys64 call :register "%sys64%" x64
if exist "%sys32%\regsvr32.exe" call :register "%sys32%" x86
if not defined failed exit /b 0
echo regsvr32 failed. For every user it needs an administrator; for yourself only add /user.
exit /b 1

:register
"%~1\regsvr32.exe" /s %undo% %scope% "%here%%~2\Celdo.dll"
if not errorlevel 1 echo %done% %~2\Celdo.dll
if errorlevel 1 set "failed=%~2"
exit /b 0
