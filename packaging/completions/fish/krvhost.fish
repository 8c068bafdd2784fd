# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
complete -c krvhost -l viewer -r -d "The viewer to start"
complete -c krvhost -l arg -x -d "Argument for the viewer"
complete -c krvhost -l name -x -d "Name of the server"
complete -c krvhost -l script -r -d "Command lines from a file"
complete -c krvhost -l timeout -x -d "Longest wait for the viewer"
complete -c krvhost -l no-start -d "Start no viewer"
complete -c krvhost -l tmp -d "Hand over temporary copies"
complete -c krvhost -l stay -d "Wait until the viewer is closed"
complete -c krvhost -l leave -d "Leave the viewer running"
complete -c krvhost -s h -l help -d "Print a short help"
complete -c krvhost -s v -l version -d "Print the version"
