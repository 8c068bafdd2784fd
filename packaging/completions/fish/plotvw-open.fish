# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
complete -c plotvw-open -f -a "(__fish_complete_suffix .plf)"
