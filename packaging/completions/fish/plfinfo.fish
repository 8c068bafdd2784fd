# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
complete -c plfinfo -f -a "(__fish_complete_suffix .plf)"
complete -c plfinfo -s c -l check -d "End with 1 if a graph is damaged"
complete -c plfinfo -s r -l recursive -d "Search the folders in folders too"
complete -c plfinfo -s j -l json -d "Print JSON"
complete -c plfinfo -l json-lines -d "Print JSON, one line for each graph"
complete -c plfinfo -l csv -x -a vectors -d "Print a table as CSV"
complete -c plfinfo -s d -l dump -d "List every command and vector"
complete -c plfinfo -s h -l help -d "Print a short help"
complete -c plfinfo -s v -l version -d "Print the version"
