" Main scripts by their ending. The other endings are in use elsewhere, so the first line must agree.
autocmd BufNewFile,BufRead *.kvl setfiletype kvl
autocmd BufNewFile,BufRead *.script if getline(1) =~# '^\$BEGIN\s\+KVL\>' | set filetype=kvl | endif
autocmd BufNewFile,BufRead *.pattern if getline(1) =~# '^\$BEGIN\s\+KVL\>' | set filetype=kvlpattern | endif
autocmd BufNewFile,BufRead *.type if getline(1) =~# '^\$BEGIN\s\+KVL\>' | set filetype=kvltype | endif
