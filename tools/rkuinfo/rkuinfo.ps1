# PowerShell completion of rkuinfo; the program prints the words. Put ". FOLDER\rkuinfo.ps1" into your $PROFILE.
Register-ArgumentCompleter -Native -CommandName rkuinfo, rkuinfo.exe -ScriptBlock {
    param($word, $line, $position)
    $words = @($line.CommandElements | Select-Object -Skip 1 | Where-Object { $_.Extent.EndOffset -lt $position } |
        ForEach-Object { $_.Extent.Text.Trim("'", '"') })
    & $line.CommandElements[0].Extent.Text complete @words $word 2>$null |
        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_) }
}
