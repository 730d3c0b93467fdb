No Prep Configuration
Model Configuration
exe
out.txt
2
0
0
0
0



No Vels Configuration
