# PowerShell completion of rkuinfo: put ". FOLDER\rkuinfo.ps1" into your $PROFILE.
Register-ArgumentCompleter -Native -CommandName rkuinfo, rkuinfo.exe -ScriptBlock {
    param($word, $line, $position)
    $commands = 'show get set list tree search rm export import diff profiles use provision languages doctor help'
    $common = '--program --company --product --language --profile --columns --color --help --version'
    $options = @{
        show = '--json'; list = '--json'; languages = '--json'; doctor = '--json'
        get = '--as --default --json'; set = '--file'; diff = '--file'; rm = '--value --all'
        export = '--file --format'; import = '--file --dry-run'
    }
    $values = @{
        '--language' = 'cs-CZ de-DE en-US es-ES fr-FR hu-HU it-IT ja-JP ko-KR pl-PL pt-BR ru-RU tr-TR zh-CN zh-TW'
        '--color' = 'always never auto'; '--format' = 'json reg'; '--as' = 'double hex'
    }
    $subtrees = 'product-root version-root language-root profiles-root current-profile applications ' +
        'recent-file-list settings user-config'

    # The words before this one: the command, its own words, and the options that say whom to be.
    $elements = @($line.CommandElements | Select-Object -Skip 1 | Where-Object { $_.Extent.EndOffset -lt $position } |
        ForEach-Object { $_.Extent.Text.Trim("'", '"') })
    $command = ''; $words = @(); $identity = @()
    for ($i = 0; $i -lt $elements.Count; ++$i) {
        $element = $elements[$i]
        if ($element -in '--program', '--company', '--product', '--language', '--profile') {
            $identity += $element, $elements[++$i]
        } elseif ($element -in '--columns', '--color', '--file', '--format', '--value', '--as', '--default') {
            ++$i
        } elseif (-not $element.StartsWith('-')) {
            if ($command) { $words += $element } else { $command = $element }
        }
    }
    $before = if ($elements.Count) { $elements[-1] } else { '' }
    $program = $line.CommandElements[0].Extent.Text

    $found = if ($values.ContainsKey($before)) { $values[$before] -split ' ' }
    elseif ($word.StartsWith('-')) { ($common + ' ' + $options[$command]) -split ' ' }
    elseif (-not $command -or ($command -eq 'help' -and -not $words)) { $commands -split ' ' }
    elseif ($command -eq 'profiles') {
        if (-not $words) { 'list', 'current', 'create', 'select', 'copy', 'delete' }
        else { & $program @identity profiles 2>$null | ForEach-Object { ($_ -split "`t")[1] } }
    }
    elseif ($command -in 'show', 'use', 'provision', 'languages', 'doctor', 'help') { }
    elseif (-not $words) { $subtrees -split ' ' }
    elseif ($command -eq 'set' -and $words.Count -eq 2) { 'int', 'int64', 'double', 'binary', 'string' }
    else {
        $key = if ($word.Contains('/')) { $word.Substring(0, $word.LastIndexOf('/') + 1) } else { '' }
        & $program @identity list $words[0] $key 2>$null | ForEach-Object {
            $cells = $_ -split "`t"
            if ($cells[1] -eq 'key') { $key + $cells[0].TrimEnd('\') + '/' }
            elseif ($command -in 'get', 'set') { $key + $cells[0] }
        }
    }
    $found | Where-Object { $_ -and $_.StartsWith($word) } |
        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_) }
}
