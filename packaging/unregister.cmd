@echo off
rem Unregisters what register.cmd registered; /user for the current user's registration.
call "%~dp0register.cmd" /u %*
