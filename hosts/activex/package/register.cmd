@echo off
rem Registers the controls beside this file: register [user] [/u]
rem   register            for the whole machine, as an administrator
rem   register user       for the present user, without rights
rem   with /u behind it, takes them out again
setlocal
set out=
set user=
for %%a in (%*) do (
  if /i "%%a"=="user" set user=/n /i:user
  if /i "%%a"=="/u" set out=/u
)
regsvr32 %out% %user% "%~dp0discoplan.ocx"
